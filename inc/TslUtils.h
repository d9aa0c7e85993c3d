#pragma once

#include <Elementary.h>
#include <bundle.h>
#include <gio/gio.h>
#include <utils_i18n.h>

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

    /// @return a date and time of day as the region of the settings writes them, always in UTC;
    /// null
    ///     when the platform can't write it
    /// @param date  milliseconds since 1970
    static char *getIcuDate(i18n_udate date);
    /// @return a number in the digits of the region of the settings; null on failure
    static char *getTextFori18n(int nNumber);
    /// @return "1280X720", cut after 14 characters; null when both are below 1
    /// @param nWidth, nHeight  pixels
    static char *getResolutionToString(int nWidth, int nHeight);
    /// @return a size in the largest unit that it fills, to one place: "1.5 MB". Sizes below 1024
    ///     are all "0.0 B". Null without memory.
    static char *getFileSizeText(unsigned long long nBytes);
    /// Looks a colour of the theme up.
    /// @param[out] pR, pG, pB, pA  0 to 255, not premultiplied; left alone on failure
    /// @return false for a code that the theme doesn't have
    static bool getRGBA(const char *szColorCode, double *pR, double *pG, double *pB, double *pA);
    /// @return "#" and the four values in hexadecimal, two digits at least each, as "#ff0010ff";
    /// null
    ///     when one is negative
    static char *getHexColorCodeFromRGBA(int nR, int nG, int nB, int nA);

    /// @return whether the text holds "rtp://", "rtsp://", "http://" or "https://", anywhere
    static bool isStreamingPath(const char *szUri);
    /// @return whether anything, a folder too, has the path
    static bool isFileExisted(const char *szFullPath);
    /// @return whether what follows the last dot is "3gp"
    static bool is3gpFile(const char *szFileUri);
    /// @return whether the system shows its private storage
    static bool isPrivateStorage();
    /// @return whether the path holds that of the private storage
    static bool isPrivateContent(const char *szFilePath);
    /// Folders of the internal storage. The text is lent: valid until the same operation's next
    /// call on this thread. Null on failure.
    static const char *getMediaRootDirectory();
    static const char *getMediaMusicDirectory();
    static const char *getMediaVideosDirectory();
    static const char *getMediaSoundsDirectory();
    /// @return the file's name without its extension; null for a null or empty path
    static char *getTitleFromPath(const char *szFilePath);
    /// @return the file's name; null for a null or empty path
    static char *getTitleAndExtFromPath(const char *szFilePath);
    /// @return the first that exists of the path with ".srt", ".sub", ".smi" or their capitals in
    ///     place of its extension; null when none does
    static char *getSubtitlePathFromPath(const char *szFilePath);
    /// @param szFilePath  with a "/"
    /// @return all before the last "/"; null for a null or empty path
    static char *getFolderPathFromFile(const char *szFilePath);
    /// @return the path as the user is shown it, with the storage's name in front; null when it
    ///     lies in no storage
    static char *convertFilePathToAbstractPath(const char *szFilePath);
    /// Searches for a text.
    /// @return the source advanced by the value, 0 to 255, of the byte where the target was found,
    ///     which may be beyond its end; null when it isn't there
    static const char *findString(const char *szSource, const char *szTarget);

    /// @return false when the system reports that the battery is empty; true also when it reports
    ///     nothing
    static bool checkBatteryAvailable();
    /// @return false: nothing tells which application is in the foreground
    static bool isSharePanelRunningOnForeGround();
    /// Sends a message to a port of another application.
    /// @param pBundle  the message, which stays the caller's; null sends one text that says so
    /// @return true when the sending failed; false when the message was sent, and also for a null
    ///     argument and a port that isn't there
    static bool messagePortSendMessage(const char *szRemoteAppId, const char *szRemotePort,
                                       bundle *pBundle);
    /// Calls a method of a service on the system bus and waits for its reply, two minutes at most.
    /// @param pBody  arguments as a tuple, null for none; a floating one is taken over
    /// @return whether a reply came, be it an error of the service
    static bool gdbusInvokeMethodSync(const char *szName, const char *szPath,
                                      const char *szInterface, const char *szMethod,
                                      GVariant *pBody);
    /// Switches the toolkit to the language of the system settings, if there is one.
    static void updateLanguageSet();
    /// Blocks the calling thread.
    static void waitingForObject(int nMicroSecond);
    /// Brings this application to the foreground.
    /// @return whether the platform did so
    static bool resumeCurrentApp();

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
