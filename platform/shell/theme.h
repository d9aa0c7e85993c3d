#pragma once

namespace host {

/// Lays the platform's own theme over the toolkit's. A missing file is told on standard error; the
/// toolkit's default then stands alone.
void load_platform_theme();

}  // namespace host
