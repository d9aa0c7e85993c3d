#pragma once

#include <Elementary.h>

/// Helpers that several classes share: widgets from the program's resources, the size of the
/// window, texts, settings.
///
/// Static operations for the main loop. The one state is the process-wide window, which isn't
/// owned. File arguments are relative to the application's resource folder. Returned texts are heap
/// copies that the caller frees; returned objects belong to their parent.
class TslUtils {
public:
    TslUtils() = delete;

    /// @return minutes and seconds as "MM:SS"; hours are dropped, the minutes wrap at 60. Null when
    ///     the text can't be made.
    /// @param nPlayTimeMs  milliseconds
    static char *convertPlayTimeToStringFormat(int nPlayTimeMs);

    /// Switches the toolkit to the language of the system settings, if there is one.
    static void updateLanguageSet();

    /// @param szGroup  group of an Edje file, or key of an image
    /// @return an icon, neither shown nor sized; null on failure
    static Evas_Object *createIcon(Evas_Object *pParent, const char *szFile, const char *szGroup);
    /// @return an image, neither shown nor sized; null on failure
    static Evas_Object *createImage(Evas_Object *pParent, const char *szFile, const char *szGroup);
    /// @return a layout that expands and is shown; null on failure
    static Evas_Object *createLayout(Evas_Object *pParent, const char *szEdjFile,
                                     const char *szGroupName);
    /// @param szStyle  null keeps the default style
    /// @return a list that fills its place and is shown; null without parent
    static Evas_Object *createGenlist(Evas_Object *pParent, const char *szStyle);
    /// @param szText  null makes a label without text
    /// @return a label that slides its text when that is too long, shown; null without parent
    static Evas_Object *createSliderText(Evas_Object *pParent, const char *szStyle,
                                         const char *szText);
    /// @param szStyle  kept as a pointer: it must outlive the class
    /// @return a class that the caller frees with elm_genlist_item_class_free(); null on failure
    static Elm_Genlist_Item_Class *createGenlistItemClass(const char *szStyle,
                                                          Elm_Gen_Item_Text_Get_Cb textGet,
                                                          Elm_Gen_Item_Content_Get_Cb contentGet);

    /// The process-wide window, null until it is set. Not owned.
    static void setGlobalWindow(Evas_Object *pWindow);
    static Evas_Object *getGlobalWindow();

    /// @return pixels across the screen as the window is turned; 0 without window
    static int getWindowWidth();
    /// @return pixels down the screen as the window is turned; 0 without window
    static int getWindowHeight();
    /// Scales a length of the 1280 x 720 reference screen.
    /// @param nLength  1 to 1280, or to 720 when the window is turned by 90 or 270 degrees
    static int getScaledWidth(int nLength);
    /// @param nLength  1 to 720, or to 1280 when the window is turned by 90 or 270 degrees
    static int getScaledHeight(int nLength);
    /// @return whether the window is turned by 90 or 270 degrees
    static bool isLandscape();
};
