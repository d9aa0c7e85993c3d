#include "TslScreenReaderCtrl.h"

#include <uxt.h>

#include "TslLog.h"

namespace {

constexpr char TEXT_DOMAIN[] = "tessel";
constexpr size_t MIN_TEXT_LENGTH = 2;
constexpr int READING_INFO_NAME = 1;
constexpr int READING_INFO_NAME_AND_DESCRIPTION = 5;

/// Logs what is missing for an accessible object.
bool hasTarget(const void *pTargetObject) {
    if (pTargetObject == nullptr) {
        TslError(
            "It is failed to set accessible contents because evas_object is not existed. - "
            "pTargetObject == nullptr");
        return false;
    }
    return true;
}

bool hasParent(const void *pParentObject) {
    if (pParentObject == nullptr) {
        TslError(
            "It is failed to set accessible contents because evas_object is not existed. - "
            "pParentObject == nullptr");
        return false;
    }
    return true;
}

bool hasCallback(AccessibleNameCb screenReaderNameCb) {
    if (screenReaderNameCb == nullptr) {
        TslError(
            "It is failed to set accessible contents because screenReaderNameCb is not existed. - "
            "screenReaderNameCb == nullptr");
        return false;
    }
    return true;
}

}  // namespace

class TslScreenReaderCtrlInside {
public:
    bool _setAccessibleNaviframe(Elm_Object_Item *pTargetObject, const std::string &strName,
                                 const std::string &strDescription);
    bool _setAccessibleContents(Evas_Object *pTargetObject, const std::string &strName,
                                const std::string &strDescription, AccessibleRoleType roleType,
                                int nReadingInfo);
    bool _setAccessibleContents(Evas_Object *pTargetObject, Evas_Object *pParentObject,
                                const std::string &strName, const std::string &strDescription,
                                AccessibleRoleType roleType, int nReadingInfo);
    bool _setCallbackOfAccessibleName(Evas_Object *pTargetObject,
                                      AccessibleNameCb screenReaderNameCb, void *pData);
    bool _setCallbackOfAccessibleName(Evas_Object *pTargetObject, Evas_Object *pParentObject,
                                      AccessibleNameCb screenReaderNameCb, void *pData);
    bool _enableHighlight(Evas_Object *pTargetObject);
    bool _disableHighlight(Evas_Object *pTargetObject);
    bool _sayManualText(const std::string &strText);
    bool _isEnabledToAccessAccessibility();

private:
    void _setAccessibleName(Eo *pTargetObject, const std::string &strName);
    void _setAccessibleDescription(Eo *pTargetObject, const std::string &strDescription);
    void _setTranslationDomain(Eo *pTargetObject, const std::string &strDomain);
    void _setAccessibleRole(Eo *pTargetObject, AccessibleRoleType roleType);
    void _setReadingInfoType(Eo *pTargetObject, int nReadingInfo);
    Evas_Object *_getAccessibleObject(Evas_Object *pTargetObject, Evas_Object *pParentObject);
};

void TslScreenReaderCtrlInside::_setAccessibleName(Eo *pTargetObject, const std::string &strName) {
    if (!hasTarget(pTargetObject)) {
        return;
    }
    if (strName.length() < MIN_TEXT_LENGTH) {
        TslInfo("Length of strName is 0. So, It cannot set elm_atspi_accessible_name_set().");
        return;
    }
    elm_atspi_accessible_name_set(pTargetObject, strName.c_str());
}

void TslScreenReaderCtrlInside::_setAccessibleDescription(Eo *pTargetObject,
                                                          const std::string &strDescription) {
    if (!hasTarget(pTargetObject)) {
        return;
    }
    if (strDescription.length() < MIN_TEXT_LENGTH) {
        TslInfo(
            "Length of strDescription is 0.  So, It cannot set "
            "elm_atspi_accessible_description_set().");
        return;
    }
    elm_atspi_accessible_description_set(pTargetObject, strDescription.c_str());
}

void TslScreenReaderCtrlInside::_setTranslationDomain(Eo *pTargetObject,
                                                      const std::string &strDomain) {
    if (!hasTarget(pTargetObject)) {
        return;
    }
    if (strDomain.length() < MIN_TEXT_LENGTH) {
        TslInfo(
            "Length of strDescription is 0.  So, It cannot set "
            "elm_atspi_accessible_translation_domain_set().");
        return;
    }
    elm_atspi_accessible_translation_domain_set(pTargetObject, strDomain.c_str());
}

void TslScreenReaderCtrlInside::_setAccessibleRole(Eo *pTargetObject, AccessibleRoleType roleType) {
    if (!hasTarget(pTargetObject)) {
        return;
    }
    if (roleType == AccessibleRoleType::ELM_ATSPI_ROLE_INVALID) {
        TslInfo(
            "(roleType != AccessibleRoleType::ELM_ATSPI_ROLE_INVALID).  So, It cannot set "
            "elm_atspi_accessible_role_set().");
        return;
    }
    elm_atspi_accessible_role_set(pTargetObject, static_cast<Elm_Atspi_Role>(roleType));
}

void TslScreenReaderCtrlInside::_setReadingInfoType(Eo *pTargetObject, int nReadingInfo) {
    if (!hasTarget(pTargetObject)) {
        return;
    }
    if (nReadingInfo == 0) {
        TslInfo(
            "(roleType != AccessibleRoleType::ELM_ATSPI_ROLE_INVALID).  So, It cannot set "
            "elm_atspi_accessible_reading_info_type_set().");
        return;
    }
    elm_atspi_accessible_reading_info_type_set(
        pTargetObject, static_cast<Elm_Accessible_Reading_Info_Type>(nReadingInfo));
}

Evas_Object *TslScreenReaderCtrlInside::_getAccessibleObject(Evas_Object *pTargetObject,
                                                             Evas_Object *pParentObject) {
    if (!hasTarget(pTargetObject) || !hasParent(pParentObject)) {
        return nullptr;
    }
    Evas_Object *pAccessObject = elm_access_object_register(pTargetObject, pParentObject);
    if (pAccessObject == nullptr) {
        TslError("pAccessObject is not existed. - pAccessObject == nullptr");
    }
    return pAccessObject;
}

bool TslScreenReaderCtrlInside::_setAccessibleNaviframe(Elm_Object_Item *pTargetObject,
                                                        const std::string &strName,
                                                        const std::string &strDescription) {
    if (pTargetObject == nullptr) {
        TslError(
            "It is failed to set accessible contents because Elm_Object_Item is not existed. - "
            "pTargetObject == nullptr");
        return false;
    }
    _setTranslationDomain(pTargetObject, TEXT_DOMAIN);
    _setAccessibleName(pTargetObject, strName);
    _setAccessibleDescription(pTargetObject, strDescription);
    _setReadingInfoType(pTargetObject, READING_INFO_NAME_AND_DESCRIPTION);
    return true;
}

bool TslScreenReaderCtrlInside::_setAccessibleContents(Evas_Object *pTargetObject,
                                                       const std::string &strName,
                                                       const std::string &strDescription,
                                                       AccessibleRoleType roleType,
                                                       int nReadingInfo) {
    if (!hasTarget(pTargetObject)) {
        return false;
    }
    _setTranslationDomain(pTargetObject, TEXT_DOMAIN);
    _setAccessibleName(pTargetObject, strName);
    _setAccessibleDescription(pTargetObject, strDescription);
    _setAccessibleRole(pTargetObject, roleType);
    _setReadingInfoType(pTargetObject, nReadingInfo);
    return true;
}

bool TslScreenReaderCtrlInside::_setAccessibleContents(
    Evas_Object *pTargetObject, Evas_Object *pParentObject, const std::string &strName,
    const std::string &strDescription, AccessibleRoleType roleType, int nReadingInfo) {
    if (!hasTarget(pTargetObject) || !hasParent(pParentObject)) {
        return false;
    }
    Evas_Object *pAccessObject = _getAccessibleObject(pTargetObject, pParentObject);
    if (pAccessObject == nullptr) {
        TslError(
            "It is failed to set accessible name callback because pAccessObject is not existed. - "
            "pAccessObject == nullptr");
        return false;
    }
    return _setAccessibleContents(pAccessObject, strName, strDescription, roleType, nReadingInfo);
}

bool TslScreenReaderCtrlInside::_setCallbackOfAccessibleName(Evas_Object *pTargetObject,
                                                             AccessibleNameCb screenReaderNameCb,
                                                             void *pData) {
    if (!hasTarget(pTargetObject) || !hasCallback(screenReaderNameCb)) {
        return false;
    }
    elm_atspi_accessible_name_cb_set(pTargetObject, screenReaderNameCb, pData);
    _setReadingInfoType(pTargetObject, READING_INFO_NAME);
    return true;
}

bool TslScreenReaderCtrlInside::_setCallbackOfAccessibleName(Evas_Object *pTargetObject,
                                                             Evas_Object *pParentObject,
                                                             AccessibleNameCb screenReaderNameCb,
                                                             void *pData) {
    if (!hasTarget(pTargetObject) || !hasParent(pParentObject) ||
        !hasCallback(screenReaderNameCb)) {
        return false;
    }
    Evas_Object *pAccessObject = _getAccessibleObject(pTargetObject, pParentObject);
    if (pAccessObject == nullptr) {
        TslError(
            "It is failed to set accessible name callback because pAccessObject is not existed. - "
            "pAccessObject == nullptr");
        return false;
    }
    return _setCallbackOfAccessibleName(pAccessObject, screenReaderNameCb, pData);
}

bool TslScreenReaderCtrlInside::_enableHighlight(Evas_Object *pTargetObject) {
    if (!hasTarget(pTargetObject)) {
        return false;
    }
    elm_atspi_accessible_can_highlight_set(pTargetObject, EINA_TRUE);
    return true;
}

bool TslScreenReaderCtrlInside::_disableHighlight(Evas_Object *pTargetObject) {
    if (!hasTarget(pTargetObject)) {
        return false;
    }
    elm_atspi_accessible_can_highlight_set(pTargetObject, EINA_FALSE);
    return true;
}

bool TslScreenReaderCtrlInside::_sayManualText(const std::string &strText) {
    if (strText.empty()) {
        TslInfo("Length of strText is 0.  So, It cannot be said text.");
        return false;
    }
    elm_atspi_bridge_utils_say(strText.c_str(), EINA_TRUE, nullptr, nullptr);
    return true;
}

bool TslScreenReaderCtrlInside::_isEnabledToAccessAccessibility() {
    if (uxt_access_is_accessibility_enabled() == 0) {
        TslInfo("Accessibility is not set by user.");
        return false;
    }
    return true;
}

// A macro, because a log line names the function that it stands in.
#define RETURN_WITHOUT_INSIDE(failure)                         \
    if (m_pScreenReaderCtrlInside == nullptr) {                \
        TslError("m_pScreenReaderCtrlInside is not exsited."); \
        return failure;                                        \
    }

TslScreenReaderCtrl::TslScreenReaderCtrl()
    : m_pScreenReaderCtrlInside(new TslScreenReaderCtrlInside()) {}

TslScreenReaderCtrl::~TslScreenReaderCtrl() {
    delete m_pScreenReaderCtrlInside;
}

bool TslScreenReaderCtrl::setAccessibleNaviframe(Elm_Object_Item *pTargetObject,
                                                 const std::string &strName,
                                                 const std::string &strDescription) {
    RETURN_WITHOUT_INSIDE(false);
    return m_pScreenReaderCtrlInside->_setAccessibleNaviframe(pTargetObject, strName,
                                                              strDescription);
}

bool TslScreenReaderCtrl::setAccessibleContents(Evas_Object *pTargetObject,
                                                const std::string &strName,
                                                const std::string &strDescription,
                                                AccessibleRoleType roleType, int nReadingInfo) {
    RETURN_WITHOUT_INSIDE(false);
    return m_pScreenReaderCtrlInside->_setAccessibleContents(pTargetObject, strName, strDescription,
                                                             roleType, nReadingInfo);
}

bool TslScreenReaderCtrl::setAccessibleContents(Evas_Object *pTargetObject,
                                                Evas_Object *pParentObject,
                                                const std::string &strName,
                                                const std::string &strDescription,
                                                AccessibleRoleType roleType, int nReadingInfo) {
    RETURN_WITHOUT_INSIDE(false);
    return m_pScreenReaderCtrlInside->_setAccessibleContents(
        pTargetObject, pParentObject, strName, strDescription, roleType, nReadingInfo);
}

bool TslScreenReaderCtrl::setCallbackOfAccessibleName(Evas_Object *pTargetObject,
                                                      AccessibleNameCb screenReaderNameCb,
                                                      void *pData) {
    RETURN_WITHOUT_INSIDE(false);
    return m_pScreenReaderCtrlInside->_setCallbackOfAccessibleName(pTargetObject,
                                                                   screenReaderNameCb, pData);
}

bool TslScreenReaderCtrl::setCallbackOfAccessibleName(Evas_Object *pTargetObject,
                                                      Evas_Object *pParentObject,
                                                      AccessibleNameCb screenReaderNameCb,
                                                      void *pData) {
    RETURN_WITHOUT_INSIDE(false);
    return m_pScreenReaderCtrlInside->_setCallbackOfAccessibleName(pTargetObject, pParentObject,
                                                                   screenReaderNameCb, pData);
}

bool TslScreenReaderCtrl::enableHighlight(Evas_Object *pTargetObject) {
    RETURN_WITHOUT_INSIDE(false);
    return m_pScreenReaderCtrlInside->_enableHighlight(pTargetObject);
}

bool TslScreenReaderCtrl::disableHighlight(Evas_Object *pTargetObject) {
    RETURN_WITHOUT_INSIDE(false);
    return m_pScreenReaderCtrlInside->_disableHighlight(pTargetObject);
}

bool TslScreenReaderCtrl::sayManualText(const std::string &strText) {
    RETURN_WITHOUT_INSIDE(false);
    return m_pScreenReaderCtrlInside->_sayManualText(strText);
}

bool TslScreenReaderCtrl::isEnabledToAccessAccessibility() {
    RETURN_WITHOUT_INSIDE(false);
    return m_pScreenReaderCtrlInside->_isEnabledToAccessAccessibility();
}
