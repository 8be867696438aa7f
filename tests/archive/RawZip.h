#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Toolkit::TestSupport {

/// A zip entry. An optional field that is not set gets its correct value in the archive; set it to
/// write a wrong one.
struct RawEntry {
    std::string name;
    std::string data;           ///< The bytes between this entry's header and the next.
    std::string content = data; ///< Their decompressed form.
    std::uint16_t method = 0;   ///< 0 means stored, 8 deflated.
    std::uint16_t flags = 0;
    std::optional<std::uint32_t> checksum = std::nullopt;
    std::optional<std::uint32_t> compressedSize = std::nullopt;
    std::optional<std::uint32_t> size = std::nullopt;
    std::optional<std::uint32_t> offset = std::nullopt;
    std::string extra = "";
};

/// Returns a zip archive of `entries`.
std::string RawZip(const std::vector<RawEntry>& entries);

/// Returns `content`, of at most 65,535 bytes, in the deflate format, as one uncompressed block.
std::string Deflate(const std::string& content);

/// Returns the CRC-32 of `bytes`.
std::uint32_t ComputeChecksum(const std::string& bytes);

/// Returns the low `size` bytes of `value` in little-endian order.
std::string PackNumber(std::uint64_t value, int size);

} // namespace Toolkit::TestSupport
