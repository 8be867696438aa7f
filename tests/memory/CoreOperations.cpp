#include "toolkit/core/Assert.h"
#include "toolkit/core/Bytes.h"
#include "toolkit/core/FSInputSerializer.h"
#include "toolkit/core/FSOutputSerializer.h"
#include "toolkit/core/FSStream.h"
#include "toolkit/core/StreamResult.h"
#include "toolkit/core/smart_ptr.h"

#include "support/TempDir.h"

#include <memory>
#include <string>
#include <vector>

#include "memory/Sweep.h"

namespace Toolkit::TestSupport {
namespace {

const unsigned char* const c_data = reinterpret_cast<const unsigned char*>("some bytes to be kept");
constexpr unsigned int c_size = 21;

const TString<wchar_t> c_text = L"a text that is too long for the string itself";

const TempDir& GetDirectory()
{
    static const TempDir directory;
    return directory;
}

const TString<wchar_t>& GetStreamPath()
{
    static const TString<wchar_t> path = GetDirectory().File(L"a stream with quite a long name");
    return path;
}

// Writes the file at GetStreamPath(): one string and then one buffer.
void FillStream()
{
    FSStream stream(GetStreamPath(), FSStream::OpenWrite);
    stream.Write(c_text);
    Bytes(c_data, c_size).Serialize(stream);
}

bool HoldsData(const Bytes& bytes)
{
    unsigned char* copy = nullptr;
    unsigned int size = 0;
    const bool isCopied = bytes.GetBytes(&copy, &size);
    const std::unique_ptr<unsigned char[]> freed(copy);
    return isCopied && std::string(reinterpret_cast<char*>(copy), size) ==
                           std::string(reinterpret_cast<const char*>(c_data), c_size);
}

void ConstructsPointer(Attempt& attempt)
{
    auto* const object = new int(7);
    bool isCreated = false;
    // When the count block cannot be allocated, smart_ptr deletes the object.
    if (attempt.Run(Rule::BadAlloc, [&] { isCreated = *smart_ptr<int>(object) == 7; }))
        attempt.Expect(isCreated);
}

void AssignsRawPointer(Attempt& attempt)
{
    smart_ptr<int> pointer(new int(7));
    auto next = std::make_unique<int>(8);
    if (attempt.Run(Rule::BadAlloc, [&] { pointer = next.get(); }))
        static_cast<void>(next.release());
    attempt.Expect(*pointer == 8, *pointer == 7);
}

void UsesPointersWithoutAllocating(Attempt& attempt)
{
    const smart_ptr<int> first(new int(7));
    smart_ptr<int> second(new int(8));
    attempt.Run([&] {
        const smart_ptr<int> copy(first);
        second = copy;
        second = smart_ptr<int>::Empty();
        second = copy;
    });
    attempt.ExpectAlways(!attempt.HasAllocationFailed() && *second == 7);
}

void ConstructsBytes(Attempt& attempt)
{
    Storage<Bytes> bytes;
    attempt.Run([&] { bytes.Create(c_data, c_size); });
    unsigned char* copied = nullptr;
    unsigned int size = 0;
    const bool hasData = bytes->GetBytes(&copied, &size);
    const std::unique_ptr<unsigned char[]> copy(copied);
    attempt.Expect(HoldsData(*bytes), !hasData);
    attempt.ExpectAlways(bytes->SetBytes(c_data, c_size) && HoldsData(*bytes));
}

void SetsBytes(Attempt& attempt)
{
    Bytes bytes;
    bool isSet = false;
    attempt.Run([&] { isSet = bytes.SetBytes(c_data, c_size); });
    attempt.Expect(isSet && HoldsData(bytes), !isSet);
    attempt.ExpectAlways(bytes.SetBytes(c_data, c_size) && HoldsData(bytes));
}

void GetsBytes(Attempt& attempt)
{
    const Bytes bytes(c_data, c_size);
    unsigned char* copy = nullptr;
    unsigned int size = 1;
    bool isCopied = false;
    attempt.Run([&] { isCopied = bytes.GetBytes(&copy, &size); });
    attempt.Expect(isCopied && size == c_size, !isCopied && !copy && size == 0);
    delete[] copy;
    attempt.ExpectAlways(HoldsData(bytes));
}

void CopiesBytes(Attempt& attempt)
{
    const Bytes bytes;
    unsigned char* copy = nullptr;
    unsigned int size = 1;
    bool isCopied = false;
    attempt.Run([&] { isCopied = bytes.CopyBytes(c_data, c_size, &copy, &size); });
    attempt.Expect(isCopied && size == c_size, !isCopied && !copy && size == 0);
    delete[] copy;
}

void SerializesBytes(Attempt& attempt)
{
    const Bytes bytes(c_data, c_size);
    FSStream stream(GetStreamPath(), FSStream::OpenWrite);
    unsigned int result = 0;
    attempt.Run([&] { result = bytes.Serialize(stream); });
    attempt.Expect(result == StreamResult::Ok);
}

void DeserializesBytes(Attempt& attempt)
{
    FillStream();
    FSStream stream(GetStreamPath(), FSStream::OpenRead);
    TString<wchar_t> text;
    stream.Read(text);
    Bytes bytes;
    unsigned int result = 0;
    attempt.Run([&] { result = bytes.Deserialize(stream); });
    attempt.Expect(result == StreamResult::Ok && HoldsData(bytes), StreamResult::Failed(result));
    attempt.ExpectAlways(bytes.SetBytes(c_data, c_size) && HoldsData(bytes));
}

void OpensStream(Attempt& attempt)
{
    FillStream();
    const TString<wchar_t>& path = GetStreamPath();
    Storage<FSStream> stream;
    attempt.Run([&] { stream.Create(path, FSStream::OpenRead); });
    TString<wchar_t> text;
    const unsigned int result = stream->Read(text);
    attempt.Expect(result == StreamResult::Ok && text == c_text, result == StreamResult::NotOpen);
}

void ReadsString(Attempt& attempt)
{
    FillStream();
    FSStream stream(GetStreamPath(), FSStream::OpenRead);
    TString<wchar_t> text = L"old";
    unsigned int result = 0;
    attempt.Run([&] { result = stream.Read(text); });
    attempt.Expect(result == StreamResult::Ok && text == c_text,
                   result == StreamResult::DataFailed && text == L"old");
    // After a successful read, the buffer is next. After a failed allocation, the position in the
    // stream is not checked.
    Bytes bytes;
    attempt.Expect(bytes.Deserialize(stream) == StreamResult::Ok, true);
}

// Calls every operation of FSStream except Read() of a string. `Overload` has no effect: it lets
// the list name this function once for each overload. When out of memory, only opening may fail:
// reading works without a read-ahead buffer too.
template <int Overload>
void UsesStream(Attempt& attempt)
{
    unsigned int number = 0;
    char raw[4] = {};
    unsigned int results = 0;
    attempt.Run([&] {
        {
            FSStream stream(GetStreamPath(), FSStream::OpenWrite);
            results |= stream.Write(7u);
            results |= stream.Write("raw", 4);
            results |= stream.Write(c_text);
        }
        FSStream stream(GetStreamPath(), FSStream::OpenRead);
        results |= stream.Read(number);
        results |= stream.Read(raw, 4);
        results |= stream.Length() > 0 ? 0 : 1;
    });
    attempt.Expect(results == 0 && number == 7, results != 0);
}

void DestroysStream(Attempt& attempt)
{
    auto stream = std::make_unique<FSStream>(GetStreamPath(), FSStream::OpenWrite);
    attempt.Run([&] { stream->~FSStream(); });
    attempt.ExpectAlways(!attempt.HasAllocationFailed());
    ::operator delete(stream.release());
}

void DestroysBytes(Attempt& attempt)
{
    auto bytes = std::make_unique<Bytes>(c_data, c_size);
    attempt.Run([&] { bytes.reset(); });
    attempt.ExpectAlways(!attempt.HasAllocationFailed());
}

void UsesSerializers(Attempt& attempt)
{
    Bytes in(c_data, c_size);
    Bytes out;
    unsigned int written = 0;
    unsigned int read = 0;
    attempt.Run([&] {
        {
            const FSOutputSerializer serializer(GetStreamPath());
            written = serializer.Serialize(in);
        }
        FSInputSerializer serializer(GetStreamPath());
        static_cast<void>(serializer.GetStream());
        read = serializer.Deserialize(out);
    });
    attempt.Expect(written == 0 && read == 0 && HoldsData(out),
                   StreamResult::Failed(written) || StreamResult::Failed(read));
}

void Asserts(Attempt& attempt)
{
    attempt.Run([] { ASSERT(false); });
    attempt.ExpectAlways(!attempt.HasAllocationFailed());
}

} // namespace

std::vector<Operation> CoreOperations()
{
    return {
        {"Toolkit::smart_ptr::smart_ptr", ConstructsPointer},
        {"Toolkit::smart_ptr::operator=", AssignsRawPointer},
        {"Toolkit::smart_ptr::Empty", UsesPointersWithoutAllocating},
        {"Toolkit::Bytes::Bytes", ConstructsBytes},
        {"Toolkit::Bytes::Bytes", SetsBytes},
        {"Toolkit::Bytes::SetBytes", SetsBytes},
        {"Toolkit::Bytes::GetBytes", GetsBytes},
        {"Toolkit::Bytes::CopyBytes", CopiesBytes},
        {"Toolkit::Bytes::Serialize", SerializesBytes},
        {"Toolkit::Bytes::Deserialize", DeserializesBytes},
        {"Toolkit::Bytes::~Bytes", DestroysBytes},
        {"Toolkit::FSStream::FSStream", OpensStream},
        {"Toolkit::FSStream::~FSStream", DestroysStream},
        {"Toolkit::FSStream::Read", ReadsString},
        {"Toolkit::FSStream::Read", UsesStream<0>},
        {"Toolkit::FSStream::Read", UsesStream<1>},
        {"Toolkit::FSStream::Write", UsesStream<2>},
        {"Toolkit::FSStream::Write", UsesStream<3>},
        {"Toolkit::FSStream::Write", UsesStream<4>},
        {"Toolkit::FSStream::Length", UsesStream<5>},
        {"Toolkit::FSSerializer::FSSerializer", UsesSerializers},
        {"Toolkit::FSSerializer::~FSSerializer", UsesSerializers},
        {"Toolkit::FSSerializer::GetStream", UsesSerializers},
        {"Toolkit::FSInputSerializer::FSInputSerializer", UsesSerializers},
        {"Toolkit::FSInputSerializer::~FSInputSerializer", UsesSerializers},
        {"Toolkit::FSOutputSerializer::FSOutputSerializer", UsesSerializers},
        {"Toolkit::FSOutputSerializer::~FSOutputSerializer", UsesSerializers},
        {"Toolkit::Serializer::Serialize", UsesSerializers},
        {"Toolkit::Serializer::Deserialize", UsesSerializers},
        {"Toolkit::Serializer::~Serializer", UsesSerializers},
        {"Toolkit::ISerialize::~ISerialize", DestroysBytes},
        {"Toolkit::IStream::~IStream", DestroysStream},
        {"Toolkit::IReleaseListener::~IReleaseListener", UsesPointersWithoutAllocating},
        {"ASSERT", Asserts},
    };
}

} // namespace Toolkit::TestSupport
