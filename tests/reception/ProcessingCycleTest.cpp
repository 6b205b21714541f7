#include <gtest/gtest.h>

#include <string>

#include "tests/reception/ReceptionFixture.h"

namespace tallyhorn {
namespace {

/// A notification of that type, from that computer; the alarm's name tells one from another.
std::string Notification(const std::string& name, const std::string& type,
                         const std::string& computer = "PC") {
    return "Date: 08/21/2008 14:05:09\r\n\r\n\r\nAlarm (" + name +
           ")\r\n\r\n\r\nLog Type: System\r\nSource: Disk\r\n" + "Type: " + type +
           "\r\nCategory: None\r\nEventID: 7\r\nAccount: N/A\r\nComputer: " + computer +
           "\r\nDescription: text";
}

class ProcessingCycleTest : public ReceptionFixture {
protected:
    void Arrive(const std::string& text) { Mailslot().Waiting.push_back(text + '\0'); }
    std::string Names(ViewNumber view) {
        std::string names;
        for (std::size_t i = 0; i < received_.List(view).Size(); ++i)
            names += received_.List(view).CellText(i, MessageColumn::Alarm) + " ";
        return names;
    }
};

TEST_F(ProcessingCycleTest, SortsWhatArrivesByType) {
    Arrive(Notification("a", "Information"));
    Arrive(Notification("b", "Error"));
    Arrive(Notification("c", "Success Audit"));
    Arrive(Notification("d", "Warning"));
    Arrive(Notification("e", "Failure Audit"));
    Arrive(Notification("f", "Unheard of"));
    Arrive(Notification("g", ""));
    cycle_.TimCheckTick();
    EXPECT_EQ(Names(2), "a c ");
    EXPECT_EQ(Names(1), "d ");
    EXPECT_EQ(Names(0), "b e f g ") << "types that nobody knows are critical";
    EXPECT_EQ(received_.List(0).PictureAt(2), std::nullopt);
    EXPECT_EQ(received_.List(0).PictureAt(3), EventPicture::QuestionMark);
    EXPECT_EQ(alarm_.TypeOfEvent, "questionmark") << "the record keeps the icon key";
    EXPECT_EQ(display_.Panels[StatusPanel::NetBiosCount], "7 NetBIOS Message(s)");
    EXPECT_EQ(display_.Enabled, (std::array<bool, 7>{true, true, true, false, false, false, false}));
    EXPECT_EQ(received_.NetBios.Messages.Text(1), Notification("a", "Information")) << "the first slot is 1";
    EXPECT_EQ(signals_.Sounds, 1) << "once a batch";
    EXPECT_EQ(signals_.Flashes, 0);
    EXPECT_EQ(events_.Runs, 1) << "at the end of the batch";
}

TEST_F(ProcessingCycleTest, NothingWaitingTouchesNothing) {
    cycle_.TimCheckTick();
    EXPECT_TRUE(display_.Panels.empty());
    EXPECT_EQ(events_.Runs, 0);
    Mailslot().ReadsBeforeFailure = 0;
    Arrive(Notification("a", "Error"));
    cycle_.TimCheckTick();
    EXPECT_EQ(display_.Panels[StatusPanel::NetBiosCount], "0 NetBIOS Message(s)")
        << "there was something to read";
    EXPECT_EQ(signals_.Sounds, 0);
}

TEST_F(ProcessingCycleTest, ASuppressedTextLeavesNoTraceButItsFields) {
    Suppress("noisy");
    display_.Visible = false;
    Arrive(Notification("loud", "Warning", "NOISY"));
    Arrive("Date: 1/1/2009\r\n\r\n\r\nno name here\r\n");
    cycle_.TimCheckTick();
    EXPECT_EQ(Names(1), "")
        << "the second text carries the suppressed one's computer on and is suppressed too";
    EXPECT_EQ(received_.NetBios.Messages.UpperBound(), 0);
    EXPECT_EQ(display_.Panels[StatusPanel::NetBiosCount], "0 NetBIOS Message(s)");
    EXPECT_EQ(signals_.Sounds, 1);
    EXPECT_EQ(signals_.Flashes, 1) << "the window is hidden";
    EXPECT_EQ(alarm_.AlarmName, "loud");
    Arrive(Notification("heard", "Warning", "QUIET"));
    cycle_.TimCheckTick();
    EXPECT_EQ(Names(1), "heard ");
    EXPECT_EQ(cycle_.ReceivedCount(), 3U);
}

TEST_F(ProcessingCycleTest, AFieldThatFailsShowsTheOneBefore) {
    Arrive(Notification("first", "Warning", "ONE"));
    Arrive(
        "Date: never\r\n\r\n\r\nno name\r\n\r\n\r\n\r\n\r\nno type\r\n\r\nEventID: many\r\n\r\nComputer: "
        "two");
    cycle_.TimCheckTick();
    EXPECT_EQ(Names(1), "first first ");
    EXPECT_EQ(received_.List(1).CellText(1, MessageColumn::Computer), "TWO");
    EXPECT_EQ(received_.List(1).CellText(1, MessageColumn::DateLogged), "08/21/2008 2:05:09 PM");
}

TEST_F(ProcessingCycleTest, WhatTheViewFilterHidesIsStillKept) {
    viewFilter_.Active = true;
    viewFilter_.Computer = "SEEN";
    Arrive(Notification("a", "Error", "SEEN"));
    Arrive(Notification("b", "Error", "HIDDEN"));
    cycle_.TimCheckTick();
    EXPECT_EQ(Names(0), "a ");
    EXPECT_EQ(received_.NetBios.Messages.MessageCount(), 2);
    EXPECT_EQ(received_.NetBios.Messages.Text(2), Notification("b", "Error", "HIDDEN"));
}

TEST_F(ProcessingCycleTest, APauseLeavesTextsInTheMailslot) {
    cycle_.PauseCommand();
    EXPECT_TRUE(display_.PauseShown);
    EXPECT_TRUE(display_.Resuming);
    EXPECT_EQ(display_.Panels[StatusPanel::ProcessingStatus], "Status: Message Processing Paused");
    for (int i = 0; i < 40'000; ++i)
        Arrive(Notification("a", "Error"));
    cycle_.TimCheckTick();
    EXPECT_EQ(display_.Panels.count(StatusPanel::NetBiosCount), 0U);
    cycle_.PauseCommand();
    EXPECT_EQ(display_.Panels[StatusPanel::ProcessingStatus], "Status: Processing Messages");
    EXPECT_FALSE(display_.Resuming);
    cycle_.TimCheckTick();
    EXPECT_EQ(received_.NetBios.Messages.MessageCount(), 32'767) << "as many as a tick can count";
    cycle_.TimCheckTick();
    EXPECT_EQ(received_.NetBios.Messages.MessageCount(), 40'000);
}

TEST_F(ProcessingCycleTest, APauseEndsByItselfAtThe121stTick) {
    for (int round = 0; round < 2; ++round) {
        cycle_.PauseCommand();
        for (int tick = 1; tick <= 120; ++tick)
            cycle_.ResumeTick();
        EXPECT_TRUE(paused_);
        cycle_.ResumeTick();
        EXPECT_FALSE(paused_);
        EXPECT_FALSE(display_.PauseShown);
        EXPECT_FALSE(display_.Resuming);
    }
    cycle_.PauseCommand();
    for (int tick = 1; tick <= 100; ++tick)
        cycle_.ResumeTick();
    cycle_.PauseCommand();
    cycle_.PauseCommand();
    for (int tick = 1; tick <= 120; ++tick)
        cycle_.ResumeTick();
    EXPECT_TRUE(paused_) << "a new pause counts from 0";
}

/// Whoever raises the flag for work of his own and lowers it again ends a pause that the window still shows.
TEST_F(ProcessingCycleTest, ThePauseCommandGoesByWhatItShows) {
    cycle_.PauseCommand();
    paused_ = false;
    Arrive(Notification("a", "Error"));
    cycle_.TimCheckTick();
    EXPECT_EQ(Names(0), "a ");
    cycle_.PauseCommand();
    EXPECT_FALSE(display_.PauseShown);
}

/// Events run inside a batch, and what they bring goes between its texts; nothing is lost or taken twice.
TEST_F(ProcessingCycleTest, ATickInsideABatchIsABatchOfItsOwn) {
    clock_.PerLook = std::chrono::milliseconds(4);
    int nested = 0;
    events_.Event = [&] {
        if (++nested > 1)
            return;
        Arrive(Notification("inner", "Error"));
        cycle_.TimCheckTick();
    };
    for (const char* const name : {"1", "2", "3", "4", "5"})
        Arrive(Notification(name, "Error"));
    cycle_.TimCheckTick();
    EXPECT_GT(nested, 1);
    EXPECT_EQ(received_.List(0).Size(), 6U);
    EXPECT_NE(Names(0).find("inner 3"), std::string::npos) << Names(0);
}

TEST_F(ProcessingCycleTest, AClearInsideABatchLeavesACountThatIsTrue) {
    clock_.PerLook = std::chrono::milliseconds(4);
    events_.Event = [this] {
        received_.NetBios.Clear(0);
        events_.Event = nullptr;
    };
    for (int i = 0; i < 5; ++i)
        Arrive(Notification(std::to_string(i), "Error"));
    cycle_.TimCheckTick();
    EXPECT_EQ(static_cast<std::size_t>(received_.NetBios.Messages.MessageCount()), received_.List(0).Size());
    EXPECT_GT(received_.List(0).Size(), 0U);
}

}  // namespace
}  // namespace tallyhorn
