// Any bytes as a catalogue's answer: results and details are cut out of it and end, every name becomes a file in the
// user's folder, and every address a request of one line.
#include <string>

#include "db/AnsiText.h"
#include "fuzz/FuzzCheck.h"
#include "remote/CatalogueAnswer.h"
#include "remote/CatalogueUrl.h"
#include "remote/DownloadTarget.h"
#include "remote/RemoteCatalog.h"

namespace quillary {
namespace {

void CheckName(const std::string& received, bool isInPackage) {
    const std::string name = SafeFileName(AnsiText::Windows1252().ToUtf8(received), isInPackage);
    const Path target = (Path("/folder") / name).lexically_normal();
    FUZZ_CHECK(target.parent_path() == "/folder" && target.filename().native() == name);
    FUZZ_CHECK(!name.empty() && name.front() != '.' && name.size() <= 255);
}

void CheckUrl(const std::string& url) {
    const std::string wire = OnTheWire(url);
    for (const char c : wire) FUZZ_CHECK(c > ' ' && c < 0x7F && c != '#');
    FUZZ_CHECK(wire.starts_with("http://127.0.0.1:8711/"));
}

void Run(std::string_view bytes) {
    const CataloguePage page = ReadPage(bytes);
    FUZZ_CHECK(page.results.size() <= bytes.size());
    const CatalogueServers servers{"127.0.0.1:8711", "127.0.0.1:8711"};
    for (const auto& result : page.results) {
        CheckName(result->name, true);
        CheckName(result->name, false);
        CheckUrl(DetailsUrl(servers, result->docId, result->fileId));
        CheckUrl(PackagedFileUrl(servers, result->docId));
    }
    FUZZ_CHECK(!SumOfSizes(page.results).empty());
    FUZZ_CHECK(InformationText(ReadDetails(bytes)).size() <= bytes.size() + 1024);
}

}  // namespace
}  // namespace quillary

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    quillary::Run({reinterpret_cast<const char*>(data), size});
    return 0;
}
