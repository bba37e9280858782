#pragma once
#include <cstdint>
#include <string>

/// A file that can hold document properties here: a compound file on Windows, any file elsewhere.
void makeDocument(const std::string& path);

/// Moment of the last change to the file's content or properties, in the system's own ticks.
std::int64_t changeTime(const std::string& path);

/// A file of a file system that holds no properties.
std::string fileWithoutProperties(const std::string& plainFile);
