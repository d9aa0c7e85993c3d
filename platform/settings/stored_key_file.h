#pragma once

#include <glib.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace host {

struct KeyFileFree {
    void operator()(GKeyFile *file) const { g_key_file_unref(file); }
};
using KeyFilePtr = std::unique_ptr<GKeyFile, KeyFileFree>;

/// A key file in a folder of the user's, which other processes change too.
///
/// Writing replaces the file in one piece, so a reader, or a crash at any moment, finds the old
/// content or the new. A damaged file is renamed to a free name beside it, "NAME.damaged", with one
/// log line, and counts as absent from then on; it is never overwritten. Thread: one at a time.
class StoredKeyFile {
public:
    /// @param is_sound  whether a file that could be parsed is one that belongs here
    StoredKeyFile(std::string folder, std::string name,
                  std::function<bool(GKeyFile *)> is_sound = nullptr);

    /// The content; an absent file has none. Null when it can't be read.
    [[nodiscard]] KeyFilePtr read();
    /// Applies a change to the newest content and writes it. Other writers wait meanwhile.
    /// @return false when that can't be done; the file stays as it was
    [[nodiscard]] bool change(const std::function<void(GKeyFile *)> &apply);

    [[nodiscard]] const std::string &folder() const { return folder_; }
    [[nodiscard]] std::string path() const { return folder_ + "/" + name_; }

private:
    /// Null when the text is no sound key file.
    [[nodiscard]] KeyFilePtr parse(const std::string &text) const;
    /// @return false when the file is still where it was
    [[nodiscard]] bool set_aside();
    /// The content, with the folder locked. Null when it can't be read, or not be set aside.
    [[nodiscard]] KeyFilePtr read_locked(std::string &text);
    [[nodiscard]] bool replace(const std::string &text) const;

    const std::string folder_;
    const std::string name_;
    const std::function<bool(GKeyFile *)> is_sound_;
    bool fault_logged_ = false;
};

}  // namespace host
