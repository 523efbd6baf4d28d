#include "desktop/forms/EditorTest.h"
#include "desktop/theme/theme.h"

namespace varnoth::test {
namespace {

using ui_driver::click;

class NewSpriteTest : public EditorTest {
  protected:
    NewSpriteTest() { click(main().elboton2); }

    Form2& dialog() { return *coordinator_->form2(); }

    void type_size(const QString& width, const QString& height) {
        ui_driver::type_into(dialog().eltexto2, width);
        ui_driver::type_into(dialog().eltexto3, height);
    }

    void ok() { click(dialog().elboton2); }

    const SpriteHeaderRecord& header() { return hlspr::document().SpriteHeader; }
};

TEST_F(NewSpriteTest, ListIndexIsTheNumberInTheFile) {
    for (std::int16_t i = 0; i < 5; ++i) {
        EXPECT_EQ(text(dialog().elcombo1.GetList(i)), hlspr::sprite_type_name(i));
    }
    for (std::int16_t i = 0; i < 4; ++i) {
        EXPECT_EQ(text(dialog().elcombo2.GetList(i)), hlspr::render_mode_name(i));
    }
    EXPECT_EQ(dialog().elcombo1.ListCount(), 5);
    EXPECT_EQ(dialog().elcombo2.ListCount(), 4);
    ui_driver::choose(*dialog().elcombo1.findChild<DropDownList*>("Combo1"), 4);
    ui_driver::choose(*dialog().elcombo2.findChild<DropDownList*>("Combo1"), 3);
    ok();
    EXPECT_EQ(header().SpriteType, 4);
    EXPECT_EQ(header().RenderMode, 3);
    EXPECT_EQ(text(main().ellabel9.Caption()), "VP_PARALLEL_ORIENTED");
    EXPECT_EQ(text(main().ellabel10.Caption()), "ALPHATEST");
}

TEST_F(NewSpriteTest, OkCreatesAnEmptySpriteAndResetsTheMainWindow) {
    ui_driver::type_into(dialog().eltexto1, "spark");
    type_size("48", "33");
    ok();
    EXPECT_EQ(coordinator_->form2(), nullptr);
    EXPECT_TRUE(main().isEnabled());
    EXPECT_EQ(enabled_buttons(), new_without_frames);
    EXPECT_EQ(text(main().ellabel8.Caption()), "spark");
    EXPECT_EQ(text(main().eltexto1.Text()), "spark");
    EXPECT_EQ(text(main().ellabel7.Caption()), "48 x 33");
    EXPECT_EQ(text(main().ellabel6.Caption()), "-24, 16.5");
    EXPECT_EQ(main().ellabel1.ForeColor(), 0xD3DED8);
    EXPECT_TRUE(hlspr::UnnamedSprite);
    EXPECT_FALSE(hlspr::SpriteDirty);
    EXPECT_EQ(header().Width, 48);
    EXPECT_EQ(header().Height, 33);
    EXPECT_EQ(header().FrameCount, 0);
    EXPECT_EQ(hlspr::document().FrameHeader.OriginY, 16); // only the displayed value is unrounded
}

TEST_F(NewSpriteTest, CancelChangesNothing) {
    const std::int32_t width = header().Width;
    type_size("99", "99");
    click(dialog().elboton1);
    EXPECT_EQ(coordinator_->form2(), nullptr);
    EXPECT_TRUE(main().isEnabled());
    EXPECT_EQ(enabled_buttons(), at_start);
    EXPECT_EQ(header().Width, width);
    click(main().elboton2);
    EXPECT_EQ(text(dialog().eltexto2.Text()), "32"); // the defaults are restored
}

TEST_F(NewSpriteTest, AnyTextIsAcceptedAsSizeAndHalvesRoundToEven) {
    struct Case {
        const char* width;
        const char* height;
        std::int32_t stored_width;
        std::int32_t stored_height;
        const char* origin;
    };

    for (const Case& one :
         {Case{"wide", "32", 0, 32, "-0, 16"}, Case{"32.5", "33.5", 32, 34, "-16.25, 16.75"},
          Case{"-8", "-7", -8, -7, "--4, -3.5"}}) {
        type_size(one.width, one.height);
        ok();
        EXPECT_EQ(header().Width, one.stored_width);
        EXPECT_EQ(header().Height, one.stored_height);
        EXPECT_EQ(text(main().ellabel7.Caption()), std::string(one.width) + " x " + one.height);
        EXPECT_EQ(text(main().ellabel6.Caption()), one.origin);
        click(main().elboton2);
    }
}

TEST_F(NewSpriteTest, SizeBeyond32BitsOverflowsAfterTheReset) {
    hlspr::SpriteDirty = true;
    hlspr::UnnamedSprite = false;
    type_size("3000000000", "1");
    ok();
    EXPECT_EQ(failures_, std::vector<std::string>{"Overflow"});
    EXPECT_TRUE(hlspr::UnnamedSprite);
    EXPECT_EQ(text(main().ellabel7.Caption()), "3000000000 x 1");
    EXPECT_EQ(text(main().eltexto1.Text()), "Untitled");
    EXPECT_TRUE(main().isEnabled());
    EXPECT_TRUE(hlspr::SpriteDirty);
    EXPECT_NE(coordinator_->form2(), nullptr);
}

TEST_F(NewSpriteTest, UnsavedChangesAreDiscardedWithoutAQuestion) {
    click(dialog().elboton1);
    open_sprite(3);
    click(main().elboton7);
    click(main().elboton2);
    ok();
    EXPECT_EQ(services_.questions, std::vector<std::string>());
    EXPECT_EQ(lines().size(), 0U);
    EXPECT_FALSE(hlspr::SpriteDirty);
    EXPECT_FALSE(main().elboton3.Enabled());
    EXPECT_EQ(shown(), static_cast<Colour>(theme::field_background)); // the picture is cleared
}

} // namespace
} // namespace varnoth::test
