#pragma once

#include "toolkit/core/Bytes.h"
#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/core/smart_ptr.h"

/// The length of the Base64 form of `length` bytes: four characters for each three, begun ones
/// included. Lengths whose form has 2 GiB or more give a negative number.
TOOLKIT_API int GetCodeLength(int length);

/// The size of the array in which `length` Base64 characters are decoded. 4 give 3, 6 give 5.
TOOLKIT_API int GetDataLength(int length);

/// Encodes, whatever its name says: gives the Base64 form of `length` bytes, on one line and
/// without a null behind it, in an array that the caller frees with delete[].
///
/// False, and `*out` and `*outLength` are left alone, when there are no bytes, when the form would
/// have 2 GiB or more, when a pointer is null or when there is no memory.
TOOLKIT_API bool b64_decode_binary(const unsigned char* in, unsigned int length,
                                   unsigned char** out, unsigned int* outLength);

/// Decodes, whatever its name says: gives the bytes of `length` Base64 characters in an array that
/// the caller frees with delete[].
///
/// Nothing is skipped: a character that is no digit, white space included, stands for the digit 0.
/// A "=" ends the text and its group, which gives two bytes when the "=" is the group's fourth
/// character and one byte otherwise. A last group of less than four characters without "=" is
/// dropped, so that there may be an array and no bytes. The array has the size that
/// `GetDataLength` tells; what the bytes do not fill of it is zero.
///
/// False, and `*out` and `*outLength` are left alone, when there are no characters or more than
/// 2147483647, when a pointer is null or when there is no memory.
TOOLKIT_API bool b64_encode_binary(const unsigned char* in, unsigned int length,
                                   unsigned char** out, unsigned int* outLength);

namespace Toolkit {

/// Byte buffers to Base64 text and back.
///
/// Any thread may call the operations; nothing is thrown or logged.
class TOOLKIT_API B64 {
public:
    /// The Base64 form of `bytes`, on one line; the empty text for none.
    static TString<wchar_t> ToUNICODE(const smart_ptr<Bytes>& bytes);

    /// The bytes of a Base64 text, by the rules of `b64_encode_binary` for its UTF-8 form up to the
    /// first null character. Always a buffer, an empty one when there are no bytes or
    /// when they do not fit into memory; an empty pointer when there is no memory for the buffer.
    static smart_ptr<Bytes> ToB64(const TString<wchar_t>& text);
};

} // namespace Toolkit
