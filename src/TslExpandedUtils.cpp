#include "TslExpandedUtils.h"

#include <app_common.h>
#include <libintl.h>
#include <uxt.h>

#include <cstdlib>
#include <string>

#include "TslLog.h"
#include "TslResourceCtrl.h"

namespace {

constexpr char TEXT_DOMAIN[] = "tessel";
constexpr char LOCALE_FOLDER[] = "locale";
constexpr char COLOR_TABLE[] = "/tables/com.orvane.tessel_ChangeableColorInfo.xml";
constexpr char FONT_TABLE[] = "/tables/com.orvane.tessel_ChangeableFontInfo.xml";

void setColorTable(const std::string &strFile) {
    uxt_color_table_h hTable = uxt_theme_add_color_table(strFile.c_str());
    if (hTable == nullptr) {
        TslWarn("It is faild to create color table.");
        return;
    }
    if (uxt_theme_set_color_table(hTable) != 0) {
        TslWarn("It is failed to set uxt_theme_set_color_table.");
    }
}

void setFontTable(const std::string &strFile) {
    uxt_font_table_h hTable = uxt_theme_add_font_table(strFile.c_str());
    if (hTable == nullptr) {
        TslWarn("It is faild to create font table.");
        return;
    }
    if (uxt_theme_set_font_table(hTable) != 0) {
        TslWarn("It is failed to set uxt_theme_set_font_table.");
    }
}

}  // namespace

void TslExpandedUtils::setUxtTheme() {
    if (uxt_theme_set_changeable_ui_enabled(1) != 0) {
        TslWarn("It is failes to set uxt_theme_set_changeable_ui_enabled");
    }
    if (uxt_theme_set_style(UXT_THEME_STYLE_LIGHT) != 0) {
        TslWarn("It is failes to set uxt_theme_set_style(UXT_THEME_STYLE_LIGHT).");
    }
}

void TslExpandedUtils::bindTextDomain() {
    char *szPath = TslResourceCtrl::getInstance()->getAppResourcePath();
    if (szPath == nullptr) {
        TslError("It is failed to get App resource path.");
        return;
    }
    bindtextdomain(TEXT_DOMAIN, (std::string(szPath) + LOCALE_FOLDER).c_str());
    std::free(szPath);
}

void TslExpandedUtils::setChangeableGuiTables() {
    char *szPath = app_get_shared_resource_path();
    if (szPath == nullptr) {
        TslError("It is failed to get shared resource path.");
        return;
    }
    const std::string strPath(szPath);
    std::free(szPath);
    setColorTable(strPath + COLOR_TABLE);
    setFontTable(strPath + FONT_TABLE);
}
