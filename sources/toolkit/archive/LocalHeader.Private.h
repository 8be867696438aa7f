#pragma once

#include <cstdint>
#include <string>

namespace Toolkit {

/// What the directory of an archive says about the data of an entry.
struct EntryData {
    std::uint32_t checksum = 0;
    std::uint64_t compressedSize = 0;
    std::uint64_t size = 0;
};

/// Completes the local header of an entry at the beginning of `bytes`; false when there is none.
///
/// An archive that is written to a pipe has sizes and checksum after the data. wxWidgets does not
/// find them for stored entries and in ZIP64: it would read nothing. Other headers stay as they
/// are.
bool CompleteLocalHeader(std::string& bytes, const EntryData& data);

} // namespace Toolkit
