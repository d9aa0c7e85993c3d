# Debian's libraries. Each is named where it is linked; see docs for what each is for.

find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
find_package(Boost REQUIRED)

pkg_check_modules(EFL REQUIRED IMPORTED_TARGET
                  elementary evas ecore ecore-evas ecore-file ecore-input edje efreet eina eet)
pkg_check_modules(X11 REQUIRED IMPORTED_TARGET ecore-x x11 xext)
pkg_check_modules(GIO REQUIRED IMPORTED_TARGET gio-2.0 gio-unix-2.0)
pkg_check_modules(GST REQUIRED IMPORTED_TARGET gstreamer-1.0 gstreamer-app-1.0
                  gstreamer-video-1.0 gstreamer-audio-1.0 gstreamer-pbutils-1.0)
pkg_check_modules(PULSE REQUIRED IMPORTED_TARGET libpulse)
pkg_check_modules(ICU REQUIRED IMPORTED_TARGET icu-i18n icu-uc)
pkg_check_modules(SPEECH REQUIRED IMPORTED_TARGET speech-dispatcher)
pkg_check_modules(XML REQUIRED IMPORTED_TARGET libxml-2.0)

# The platform's C interfaces and what a device's program may use beside them. The toolkit's own
# headers are system headers, the platform's wrapper of Elementary.h comes before them.
add_library(platform-interfaces INTERFACE)
target_include_directories(platform-interfaces INTERFACE ${PROJECT_SOURCE_DIR}/platform/include)
target_link_libraries(platform-interfaces INTERFACE PkgConfig::EFL PkgConfig::GIO)
target_compile_definitions(platform-interfaces INTERFACE EFL_BETA_API_SUPPORT EFL_EO_API_SUPPORT)
