#pragma once

namespace host {

/// From now on the toolkit tells assistive technologies where the program's objects are on the
/// desktop. By itself it tells where they are on the round screen, unturned: it knows the program's
/// window as a picture without a place. Main thread.
void report_extents_on_desktop();

}  // namespace host
