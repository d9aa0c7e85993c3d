#pragma once

#include <Elementary.h>

#include <string>

class TslScreenReaderCtrlInside;

/// The platform's role numbers that the screens use.
enum class AccessibleRoleType {
    ELM_ATSPI_ROLE_INVALID = 0,  ///< leaves the object's role as it is
    ELM_ATSPI_ROLE_PUSH_BUTTON = 43,
};

/// Gives the name of an object whenever the screen reader asks for it: a heap text that the
/// platform frees, or null.
using AccessibleNameCb = Elm_Atspi_Reading_Info_Cb;

/// What a screen tells the screen reader, and whether there is one.
///
/// A screen owns one instance; it has no state beyond that. Names and descriptions are message ids
/// of the text domain "tessel"; one that is shorter than two characters leaves what was set before.
/// `nReadingInfo` is the platform's mask: 1 name, 2 role, 4 description; 0 leaves it as it is. The
/// operations with a parent are for plain objects such as Edje parts: each call registers a new
/// access object for the target. All of them give false when target, parent or callback are null.
/// Main loop.
class TslScreenReaderCtrl {
public:
    TslScreenReaderCtrl();
    ~TslScreenReaderCtrl();
    TslScreenReaderCtrl(const TslScreenReaderCtrl &) = delete;
    TslScreenReaderCtrl &operator=(const TslScreenReaderCtrl &) = delete;

    bool setAccessibleNaviframe(Elm_Object_Item *pTargetObject, const std::string &strName,
                                const std::string &strDescription);
    bool setAccessibleContents(Evas_Object *pTargetObject, const std::string &strName,
                               const std::string &strDescription, AccessibleRoleType roleType,
                               int nReadingInfo);
    bool setAccessibleContents(Evas_Object *pTargetObject, Evas_Object *pParentObject,
                               const std::string &strName, const std::string &strDescription,
                               AccessibleRoleType roleType, int nReadingInfo);
    /// The callback stays registered for the target's life, and so must `pData`.
    bool setCallbackOfAccessibleName(Evas_Object *pTargetObject,
                                     AccessibleNameCb screenReaderNameCb, void *pData);
    bool setCallbackOfAccessibleName(Evas_Object *pTargetObject, Evas_Object *pParentObject,
                                     AccessibleNameCb screenReaderNameCb, void *pData);

    /// Whether the screen reader's highlight may stop at the object.
    bool enableHighlight(Evas_Object *pTargetObject);
    bool disableHighlight(Evas_Object *pTargetObject);

    /// Has a text said at once; it gives way to a later one.
    /// @return false for an empty text
    bool sayManualText(const std::string &strText);

    /// @return whether the screen reader is on
    bool isEnabledToAccessAccessibility();

private:
    TslScreenReaderCtrlInside *m_pScreenReaderCtrlInside;
};
