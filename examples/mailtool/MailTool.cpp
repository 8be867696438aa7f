// A console program built on Toolkit. It takes a mail message apart, decodes its parts, stores them
// in one file and reads them back:
//
//     mailtool <message> <file for the parts>

#include <cstdlib>
#include <iostream>

#include "MailMessage.h"
#include "VisibleText.h"

using namespace MailTool;

namespace {

// Prints UTF-8 in every locale, and escapes characters that a terminal would act on.
void Print(const Text& line)
{
    std::cout << UTF8::ToUTF8(MakeVisible(line)) << '\n';
}

int Fail(const Text& message)
{
    std::cerr << "mailtool: " << UTF8::ToUTF8(MakeVisible(message)) << '\n';
    return EXIT_FAILURE;
}

bool ReadFile(const Text& path, Utf8& bytes)
{
    FFile file;
    if (!file.Open(path, L"rb"))
        return false;
    bytes.resize(file.GetLength());
    return bytes.empty() || file.Read(bytes.data(), static_cast<unsigned int>(bytes.size()));
}

// Writes each part's type and name as one string, and then its content. Skips parts without
// content, because empty `Bytes` cannot be read back.
bool Store(const Text& path, const std::vector<Part>& parts)
{
    FSOutputSerializer serializer(path);
    for (const Part& part : parts) {
        if (ToBytes(part.content).empty())
            continue;
        if (StreamResult::Failed(serializer.GetStream().Write(part.type + L" " + part.name)) ||
            StreamResult::Failed(serializer.Serialize(*part.content)))
            return false;
    }
    return true;
}

// Whether the file contains what Store() writes for these parts.
bool AreStored(const Text& path, const std::vector<Part>& parts)
{
    FSInputSerializer serializer(path);
    for (const Part& part : parts) {
        if (ToBytes(part.content).empty())
            continue;
        Text title;
        const Content content = new Bytes();
        if (StreamResult::Failed(serializer.GetStream().Read(title)) ||
            StreamResult::Failed(serializer.Deserialize(*content)) ||
            title != part.type + L" " + part.name || ToBytes(content) != ToBytes(part.content))
            return false;
    }
    return true;
}

void PrintHeader(const Entity& message)
{
    Print(L"From     " + DecodeWords(message.GetField("From")));
    Print(L"Subject  " + DecodeWords(message.GetField("Subject")));
    const DateTime date = ParseDate(message.GetField("Date"));
    if (!date.IsValid())
        return;
    Text local, relative, iso;
    date.GetString(local);
    date.GetRelativeStringFromNow(relative);
    date.GetIsoString(iso, true);
    Print(L"Date     " + local + L" (short " + relative + L", ISO " + iso + L")");
}

void PrintPart(const Part& part)
{
    Print(L"Part     " + part.type +
          (part.name.empty() ? Text() : Text(L" \"" + part.name + L"\"")) + L", " +
          StringConvert::UStringFromUInt64(ToBytes(part.content).size()) + L" bytes");
}

int Run(const Text& messagePath, const Text& partsPath)
{
    Utf8 text;
    if (!ReadFile(messagePath, text))
        return Fail(L"cannot read " + messagePath);

    const Entity message(text);
    const std::vector<Part> parts = DecodeParts(message);
    PrintHeader(message);
    for (const Part& part : parts)
        PrintPart(part);
    if (!Store(partsPath, parts))
        return Fail(L"cannot write " + partsPath);
    if (!AreStored(partsPath, parts))
        return Fail(L"the parts stored in " + partsPath + L" differ from the message");
    Print(L"Stored   in " + partsPath + L" and read back");
    return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3)
        return Fail(L"usage: mailtool <message> <file for the parts>");

    LibModuleManager* const modules = LibModuleManager::GetInstance();
    modules->Initialize(true);
    int exitCode = EXIT_FAILURE;
    try {
        exitCode = Run(UTF8::ToUNICODE(argv[1]), UTF8::ToUNICODE(argv[2]));
    } catch (const smart_ptr<RegExpException>& exception) {
        exitCode = Fail(UTF8::ToUNICODE(exception->message));
    }
    modules->Release(true);
    return exitCode;
}
