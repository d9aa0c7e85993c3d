#include "app-assist/WEvasObject.h"

#include "framework_fixture.h"

namespace {

using app_assist::wevasobject_get_weak_ptr;
using app_assist::WEvasObjectWeakPtr;

class EvasObjectTest : public framework::WindowedTest {
protected:
    void SetUp() override {
        WindowedTest::SetUp();
        m_object = evas_object_rectangle_add(evas_object_evas_get(win()));
    }

    Evas_Object *m_object = nullptr;
};

TEST_F(EvasObjectTest, WeakPointerGivesTheObjectWhileItLives) {
    const WEvasObjectWeakPtr weak = wevasobject_get_weak_ptr(m_object);
    ASSERT_NE(weak.lock(), nullptr);
    EXPECT_EQ(weak.lock()->getEvasObject(), m_object);
}

TEST_F(EvasObjectTest, WeakPointerExpiresWithTheObject) {
    const WEvasObjectWeakPtr weak = wevasobject_get_weak_ptr(m_object);
    evas_object_del(m_object);
    EXPECT_TRUE(weak.expired());
}

TEST_F(EvasObjectTest, CallsForOneObjectAreNotMerged) {
    const WEvasObjectWeakPtr one = wevasobject_get_weak_ptr(m_object);
    const WEvasObjectWeakPtr other = wevasobject_get_weak_ptr(m_object);
    EXPECT_NE(one.lock(), other.lock());
    evas_object_del(m_object);
    EXPECT_TRUE(one.expired());
    EXPECT_TRUE(other.expired());
}

TEST_F(EvasObjectTest, OneStrongReferenceIsHeld) {
    EXPECT_EQ(wevasobject_get_weak_ptr(m_object).use_count(), 1);
}

TEST_F(EvasObjectTest, DeletionOfTheParentExpiresItToo) {
    Evas_Object *button = elm_button_add(win());
    const WEvasObjectWeakPtr weak = wevasobject_get_weak_ptr(button);
    delete_window();
    EXPECT_TRUE(weak.expired());
}

}  // namespace
