#pragma once

#include "toolkit/core/Bytes.h"
#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/core/smart_ptr.h"

/// Returns the length of `length` bytes in Base64: four characters for every three bytes, rounded
/// up. Negative if that would be 2 GiB or more.
TOOLKIT_API int GetCodeLength(int length);

/// Returns the size of the array for decoding `length` Base64 characters: 3 for 4, 5 for 6.
TOOLKIT_API int GetDataLength(int length);

/// Encodes, despite its name: stores `length` bytes as Base64 in `*out`, an array that the caller
/// frees with delete[], and the number of characters in `*outLength`. The characters are on one
/// line, without a terminating null.
///
/// Returns false, with `*out` and `*outLength` unchanged, if there are no bytes, if the result
/// would have 2 GiB or more, if a pointer is null or when out of memory.
TOOLKIT_API bool b64_decode_binary(const unsigned char* in, unsigned int length,
                                   unsigned char** out, unsigned int* outLength);

/// Decodes, despite its name: stores the bytes of `length` Base64 characters in `*out`, an array
/// that the caller frees with delete[], and their number in `*outLength`.
///
/// Nothing is skipped: a character outside the Base64 alphabet, white space included, counts as the
/// digit 0. A "=" ends the input. Its group decodes to two bytes if the "=" is the fourth character
/// of the group, and to one byte otherwise. An incomplete last group without "=" is dropped, so
/// there may be no bytes. The array has the size that `GetDataLength` returns, with zeros after the
/// bytes.
///
/// Returns false, with `*out` and `*outLength` unchanged, if there are no characters or more than
/// 2147483647, if a pointer is null or when out of memory.
TOOLKIT_API bool b64_encode_binary(const unsigned char* in, unsigned int length,
                                   unsigned char** out, unsigned int* outLength);

namespace Toolkit {

/// Converts byte buffers to Base64 and back.
///
/// Any thread may call the operations; nothing is thrown or logged.
class TOOLKIT_API B64 {
public:
    /// Encodes `bytes` as Base64, on one line. Returns an empty string if there are no bytes, if
    /// the result would have 2 GiB or more, or when out of memory.
    static TString<wchar_t> ToUNICODE(const smart_ptr<Bytes>& bytes);

    /// Decodes Base64, despite its name: converts `text` to UTF-8, up to its first null character,
    /// and follows the rules of `b64_encode_binary`. Returns an empty buffer if UTF-8 cannot encode
    /// `text` or needs more than 2147483647 bytes, if `text` decodes to no bytes, or if there is no
    /// memory for the UTF-8 or the bytes; an empty pointer if there is no memory for the buffer
    /// object.
    static smart_ptr<Bytes> ToB64(const TString<wchar_t>& text);
};

} // namespace Toolkit
