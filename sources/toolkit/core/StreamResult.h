#pragma once

namespace Toolkit {

/// Result codes of streams and of serializable objects. Objects may return codes of their own; only
/// the failure bit says whether something went wrong.
namespace StreamResult {

constexpr unsigned int Ok = 0;

/// An empty string was written or read, or an empty `Bytes` was serialized. Not a failure.
constexpr unsigned int Nothing = 0x01000000;

constexpr unsigned int FailureBit = 0x10000000;

/// An integer could not be written completely.
constexpr unsigned int WriteIntegerFailed = 0x10000000;

/// The file is not open. `Bytes::Serialize` returns the same code when writing fails.
constexpr unsigned int NotOpen = 0x10000002;

/// Fewer bytes were read or written than asked for, the data pointer is null, or memory ran out.
constexpr unsigned int DataFailed = 0x10000003;

/// The size before a string could not be written, or does not fit into 32 bits.
constexpr unsigned int WritePrefixFailed = 0x10000005;

/// The size before a string could not be read.
constexpr unsigned int ReadPrefixFailed = 0x10000006;

constexpr bool Failed(unsigned int code)
{
    return (code & FailureBit) != 0;
}

} // namespace StreamResult
} // namespace Toolkit
