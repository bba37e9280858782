#pragma once
#include <string>

#include <platform/export.h>

namespace kestra {

/// The entries of a list of recent files, the newest first: a combo box's, or any other.
class KESTRA_API RecentEntries {
  public:
    virtual ~RecentEntries();
    virtual int count() const = 0;
    virtual std::string at(int index) const = 0;
    virtual void insertFirst(const std::string& text) = 0;
    virtual void remove(int index) = 0;
};

/// Puts a path first. Entries that equal it without regard to case go, and empty ones; with `keep`, and such
/// an entry met from the last one on, nothing changes.
KESTRA_API void addRecent(RecentEntries& entries, const std::string& path, bool keep);

/// Inserts what the settings (source "fichder", section `section`, lookup mode "l", keys "FILE0", "FILE1",
/// ..., at most `most`) hold and the list does not, "FILE0" first. An empty entry of the list, met from the
/// last one on before an equal one, keeps a path out.
KESTRA_API void readRecent(RecentEntries& entries, const std::string& section, int most);

/// Writes at most `most` entries to the settings, the first as "FILE0". Passed over: empty ones, one that
/// equals the one written before it, and those with a "*". Keys beyond the last one written stay.
KESTRA_API void writeRecent(const RecentEntries& entries, const std::string& section, int most);

}  // namespace kestra
