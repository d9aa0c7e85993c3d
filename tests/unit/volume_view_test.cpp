#include "TslVolumeView.h"

#include <dlog.h>

#include "mock_platform/mock_access.h"
#include "screen_fixture.h"

namespace {

class VolumeView : public screens::ScreenTest {
protected:
    void SetUp() override {
        ScreenTest::SetUp();
        m_view = new TslVolumeView(5, 15, 9);
        logs::clear();
    }
    void TearDown() override {
        m_view->destroy();
        ScreenTest::TearDown();
    }
    TslVolumeView *m_view = nullptr;
};

TEST_F(VolumeView, KeepsWhatItIsMadeWith) {
    EXPECT_EQ(m_view->getVolume(), 5);
    EXPECT_EQ(m_view->getMaxVolume(), 15);
    EXPECT_EQ(m_view->getSafetyVolume(), 9);
}

TEST_F(VolumeView, IsNotPushedWhileItHasNoLayout) {
    EXPECT_FALSE(naviframe().push(m_view, "tsl_volume_view"));
    EXPECT_EQ(m_view->getEvasObject(), nullptr);
    EXPECT_EQ(naviframe().getTopContentView(), nullptr);
}

TEST_F(VolumeView, RefusesALevelOffTheScale) {
    m_view->setVolume(16);
    m_view->setVolume(-1);
    EXPECT_EQ(m_view->getVolume(), 5);
    EXPECT_TRUE(LoggedTimes(
        2, DLOG_ERROR,
        "* Critical * The volume is not correct. It needs to check the value is right or not."));
    m_view->setVolume(15);
    EXPECT_EQ(m_view->getVolume(), 15);
    EXPECT_TRUE(LoggedInfo("nCurrentVolume : 15"));
}

TEST_F(VolumeView, TakesASafetyLevelOneAboveTheScale) {
    m_view->setSafetyVolume(16);
    EXPECT_EQ(m_view->getSafetyVolume(), 16);
    m_view->setSafetyVolume(17);
    m_view->setSafetyVolume(-1);
    EXPECT_EQ(m_view->getSafetyVolume(), 16);
}

TEST_F(VolumeView, TakesLevelsUpToANewMaximum) {
    m_view->setMaxVolume(20);
    m_view->setVolume(20);
    EXPECT_EQ(m_view->getVolume(), 20);
}

TEST_F(VolumeView, HasItsLevelSaid) {
    m_view->readCurrentVolumeLevel();
    ASSERT_EQ(mock::fake_access().spoken().size(), 1u);
    EXPECT_EQ(mock::fake_access().spoken()[0].text, "5");
}

TEST_F(VolumeView, IsNotPoppedWithoutObject) {
    m_view->pop();
    EXPECT_TRUE(LoggedWarn("Not created view! No Evas Object!", logs::framework_tag));
}

}  // namespace
