#include "core/services/Services.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/RecordedServices.h"
#include "support/expect_failure.h"
#include "support/pictures.h"

namespace varnoth::test {
namespace {

TEST(Services, DefaultsAnswerYesFailToLoadAndCancelChoices) {
    show_message("nobody sees this");
    yield_to_events();
    EXPECT_TRUE(ask_yes_no("Sure?"));
    EXPECT_FAILURE(picture_loader(), InvalidPicture);
    EXPECT_EQ(choose_file_to_open("Texts(*.txt)|*.txt"), "");
    EXPECT_EQ(choose_file_to_save("Texts(*.txt)|*.txt"), "");
}

TEST(Services, CallsReachTheInstalledServices) {
    RecordedServices services;
    services.answer = false;
    services.pictures["a.bmp"] = surface_of(1, 1, {7})->Image();
    show_message("Hello.");
    EXPECT_FALSE(ask_yes_no("Sure?"));
    yield_to_events();
    EXPECT_EQ(services.messages, (Texts{"Hello."}));
    EXPECT_EQ(services.questions, (Texts{"Sure?"}));
    EXPECT_EQ(services.yields, 1);
    EXPECT_EQ(picture_loader().load("a.bmp").bitmap->pixel(0, 0), 7);
}

TEST(Services, FileChooserGetsTheFilter) {
    RecordedServices services;
    services.next_open = "/tmp/open.txt";
    services.next_save = "/tmp/save.txt";
    EXPECT_EQ(choose_file_to_open("Texts(*.txt)|*.txt"), "/tmp/open.txt");
    EXPECT_EQ(choose_file_to_save("All|*"), "/tmp/save.txt");
    EXPECT_EQ(services.filters, (Texts{"Texts(*.txt)|*.txt", "All|*"}));
}

TEST(Services, InstallationIsUndoneAtTheEndOfItsLifetime) {
    RecordedServices outer;
    {
        RecordedServices inner;
        show_message("inner");
        EXPECT_EQ(inner.messages.size(), 1U);
    }
    show_message("outer");
    EXPECT_EQ(outer.messages, (Texts{"outer"}));
}

class CountingQueue : public EventQueue {
  public:
    int yields = 0;

    void yield() override { ++yields; }
};

TEST(Services, NullMemberKeepsThePreviousService) {
    RecordedServices services;
    CountingQueue queue;
    const ServicesInstallation installation({nullptr, &queue, nullptr, nullptr});
    yield_to_events();
    show_message("still there");
    EXPECT_EQ(queue.yields, 1);
    EXPECT_EQ(services.yields, 0);
    EXPECT_EQ(services.messages.size(), 1U);
    services.next_open = "kept.txt";
    EXPECT_EQ(choose_file_to_open("All|*"), "kept.txt");
}

TEST(Services, EmptyInstallationChangesNothing) {
    RecordedServices services;
    const ServicesInstallation installation({});
    yield_to_events();
    EXPECT_EQ(services.yields, 1);
}

} // namespace
} // namespace varnoth::test
