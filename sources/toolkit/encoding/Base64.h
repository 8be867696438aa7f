#pragma once

#include "toolkit/core/Bytes.h"
#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/core/smart_ptr.h"

/// The length of the Base64 form of `length` bytes: four characters for every three bytes, rounded
/// up. Negative when the form would have 2 GiB or more.
TOOLKIT_API int GetCodeLength(int length);

/// The size of the array for the decoded form of `length` Base64 characters: 3 for 4, 5 for 6.
TOOLKIT_API int GetDataLength(int length);

/// Encodes, despite its name: returns the Base64 form of `length` bytes, on one line and without a
/// null after it, in an array that the caller frees with delete[].
///
/// False, with `*out` and `*outLength` unchanged, when there are no bytes, when the form would have
/// 2 GiB or more, when a pointer is null or when out of memory.
TOOLKIT_API bool b64_decode_binary(const unsigned char* in, unsigned int length,
                                   unsigned char** out, unsigned int* outLength);

/// Decodes, despite its name: returns the bytes of `length` Base64 characters in an array that the
/// caller frees with delete[].
///
/// Nothing is skipped: a character that is not a digit, white space included, counts as the digit
/// 0. A "=" ends the text and its group, which gives two bytes when the "=" is the group's fourth
/// character and one byte otherwise. A last group of fewer than four characters without "=" is
/// dropped, so an array may hold no bytes. The size of the array is that of `GetDataLength`; its
/// unused rest is zero.
///
/// False, with `*out` and `*outLength` unchanged, when there are no characters or more than
/// 2147483647, when a pointer is null or when out of memory.
TOOLKIT_API bool b64_encode_binary(const unsigned char* in, unsigned int length,
                                   unsigned char** out, unsigned int* outLength);

namespace Toolkit {

/// Byte buffers to Base64 text and back.
///
/// Any thread may call the operations; nothing is thrown or logged.
class TOOLKIT_API B64 {
public:
    /// The Base64 form of `bytes`, on one line; the empty text when there are none or when out of
    /// memory.
    static TString<wchar_t> ToUNICODE(const smart_ptr<Bytes>& bytes);

    /// The bytes of a Base64 text, by the rules of `b64_encode_binary` for its UTF-8 form up to the
    /// first null character. An empty buffer when there are no bytes or no memory for them; an
    /// empty pointer when there is no memory for the buffer object.
    static smart_ptr<Bytes> ToB64(const TString<wchar_t>& text);
};

} // namespace Toolkit
