#pragma once

#include <functional>
#include <string>

namespace host {

/// What became of a text.
enum class Spoken {
    whole,      ///< said to its end
    cancelled,  ///< began or waited, and gave way to another
    skipped     ///< there is no speech service, or it refused
};

/// Hands a text to the desktop's speech service and returns at once. Where no service runs, and it
/// isn't started for this, a warning is logged once, and again after one has come and gone. Any
/// thread.
/// @param language  as "fr" or "pt_BR"
/// @param discardable  whether it gives way to the next text
/// @param told  called once on the main loop; may be empty
void speak(std::string text, std::string language, bool discardable,
           std::function<void(Spoken)> told);

/// Ends the service's connection. Texts that wait are dropped, and nobody is told. Main thread.
void stop_speech();

}  // namespace host
