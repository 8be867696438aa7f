#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Toolkit::TestSupport {

/// An entry in which any field may be wrong.
struct RawEntry {
    std::string name;
    std::string data;           ///< The bytes between this entry's header and the next.
    std::string content = data; ///< Their decompressed form.
    std::uint16_t method = 0;   ///< 0 is stored, 8 deflated.
    std::uint16_t flags = 0;
    std::optional<std::uint32_t> checksum = std::nullopt;
    std::optional<std::uint32_t> compressedSize = std::nullopt;
    std::optional<std::uint32_t> size = std::nullopt;
    std::optional<std::uint32_t> offset = std::nullopt;
    std::string extra = "";
};

/// The archive of `entries`, byte by byte.
std::string RawZip(const std::vector<RawEntry>& entries);

/// `content` in the deflate format, as one block that is not compressed.
std::string Deflated(const std::string& content);

std::uint32_t Checksum(const std::string& bytes);

/// The low `size` bytes of `value` in little-endian order.
std::string Number(std::uint64_t value, int size);

} // namespace Toolkit::TestSupport
