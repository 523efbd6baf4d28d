// The combo box: a drop-down list whose own edge is clipped off and whose arrow is covered by our own.
#pragma once

#include "desktop/controls/parts/EdgeLines.h"
#include "desktop/controls/parts/PartSurface.h"
#include "desktop/controls/parts/SkinnedControl.h"
#include "desktop/widgets/DropDownList.h"

namespace varnoth {

/// Parts: the clip `Picture2` with the list `Combo1` and, over its arrow, `Picture1` with the glyph `Label2`;
/// `lineA(0)` top, `lineA(1)` left, `lineB(0)` right, `lineB(1)` bottom. Always 300 twips high and at least
/// 1425 wide.
class elcombo final : public SkinnedControl {
    Q_OBJECT
    Q_PROPERTY(int BackColor READ BackColor)
    Q_PROPERTY(int ForeColor READ ForeColor)
    Q_PROPERTY(bool Enabled READ Enabled)
    Q_PROPERTY(QString List READ List)
    Q_PROPERTY(int Color3DLight READ Color3DLight)
    Q_PROPERTY(int Color3DDark READ Color3DDark)
    Q_PROPERTY(int SymbolColor READ SymbolColor)
    Q_PROPERTY(int SymbolOverColor READ SymbolOverColor)
    Q_PROPERTY(QFont Font READ Font)
    Q_PROPERTY(QString FontName READ FontName)
    Q_PROPERTY(double FontSize READ FontSize)
    Q_PROPERTY(bool FontItalic READ FontItalic)
    Q_PROPERTY(bool FontUnderline READ FontUnderline)
    // These three have no effect: their setters only notify the host.
    Q_PROPERTY(bool DropShadow READ DropShadow STORED false)
    Q_PROPERTY(int ListBackColor READ ListBackColor STORED false)
    Q_PROPERTY(int ListForeColor READ ListForeColor STORED false)

  public:
    elcombo(const QString& name, QWidget* parent);

    /// The items, joined by line feeds.
    QString List() const;
    void SetList(const QString& lines);

    Colour SymbolColor() const { return symbol_colour_; }

    void SetSymbolColor(Colour colour);

    Colour SymbolOverColor() const { return symbol_over_colour_; }

    void SetSymbolOverColor(Colour colour);

    bool DropShadow() const { return false; }

    void SetDropShadow(bool shadow);

    Colour ListBackColor() const { return 0; }

    void SetListBackColor(Colour colour);

    Colour ListForeColor() const { return 0; }

    void SetListForeColor(Colour colour);

    // The items, counted from 0.

    void Clear();
    /// Appends an item.
    void AddItem(const QString& item);

    /// Selects an item and raises Click. Does nothing if there is no such item.
    void SetListIndex(std::int16_t donde);

    /// The index of the selected item, or -1.
    std::int16_t GetListIndex() const;
    std::int16_t ListCount() const;

    /// Names the list for screen readers. The control itself stays unnamed, so that the name is spoken once.
    void setAccessibleName(const QString& name);

    DropDownList& Combo1() { return combo1_; }

    // Interface: not used by the editor itself.

    /// Does nothing if there is no such item.
    void RemoveItem(std::int16_t donde);

    /// The text of an item. Fails with SubscriptOutOfRange if there is no such item.
    void SetList(std::int16_t donde, const QString& item);
    QString GetList(std::int16_t donde) const;

    /// Gives the arrow its hover colour.
    void set_over_state();
    void set_normal_state();

  signals:
    /// An item was selected, by the user or by SetListIndex.
    void Click();

  private:
    bool has_item(std::int16_t donde) const { return donde >= 0 && donde < combo1_.ListCount(); }

    void resized() override;
    void show_back_colour() override;
    void show_fore_colour() override;
    void show_light() override;
    void show_dark() override;
    void show_font() override;

    PartSurface picture2_;
    DropDownList combo1_;
    PartSurface picture1_;
    TextPart label2_;
    EdgeLines edges_{20};
    Colour symbol_colour_ = 0;
    Colour symbol_over_colour_ = 0;
};

} // namespace varnoth
