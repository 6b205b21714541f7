#include <QLabel>
#include <QProgressBar>
#include <memory>
#include <tuple>

#include "storage/forms/frmSavingMessages.h"
#include "tests/forms/ControlChecks.h"
#include "tests/forms/DialogFixture.h"

namespace tallyhorn {
namespace {

class frmSavingMessagesTest : public DialogFixture {
protected:
    QWidget& Dialog() override { return *window_; }

    std::unique_ptr<frmSavingMessages> window_;
};

TEST_F(frmSavingMessagesTest, ShowsProgressOnlyWhileLoading) {
    for (const bool loading : {false, true}) {
        window_ = std::make_unique<frmSavingMessages>(loading ? frmSavingMessages::Work::Loading
                                                              : frmSavingMessages::Work::Saving);
        ShowDialog();
        ExpectSoundControls(*window_);
        EXPECT_EQ(window_->windowTitle(),
                  loading ? "Loading Messages ... Please Wait" : "Saving Messages ... Please Wait");
        EXPECT_EQ(Find("pgbProgress")->isVisible(), loading);
        EXPECT_EQ(Find("lblProgress")->isVisible(), loading);
    }
    const std::tuple<std::uint64_t, std::uint64_t, const char*, int> cases[] = {
        {0, 0, "0 of 0", 0},
        {999, 1'000, "999 of 1,000", 999},
        {1'234'567, 12'345'670, "1,234,567 of 12,345,670", 100},
        {70, 60, "70 of 70", 1000},
    };
    QCoreApplication::processEvents();
    const QSize size = window_->size();
    const auto* const bar = Find<QProgressBar>("pgbProgress");
    for (const auto& [done, total, text, thousandths] : cases) {
        window_->ShowProgress(done, total);
        QCoreApplication::processEvents();
        EXPECT_EQ(Find<QLabel>("lblProgress")->text(), text);
        EXPECT_EQ(bar->value() * 1000 / bar->maximum(), thousandths) << text;
        EXPECT_EQ(window_->size(), size) << text;
    }
}

}  // namespace
}  // namespace tallyhorn
