#pragma once

/// What stands behind one implementation of the audio focus.
namespace focus_world {

/// A fresh implementation in use, with nobody holding anything.
void begin();
void end();

}  // namespace focus_world
