// Looks through the published folder and makes the catalogue of it. A file whose stamp is as it was is not read again.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>

#include "catalogue-server/Catalogue.h"
#include "catalogue-server/CatalogueJson.h"
#include "catalogue-server/FileFacts.h"
#include "db/AnsiText.h"

namespace quillary {

class FolderIndexer {
  public:
    using Report = std::function<void(const std::string& problem)>;
    using Entering = std::function<void(const Path& folder)>;  // before it is looked into
    using GoOn = std::function<bool()>;

    FolderIndexer(Path folder, const AnsiText& page, Report report)
        : m_location(std::move(folder)), m_page(page), m_report(std::move(report)) {}

    struct Look {
        std::shared_ptr<const Catalogue> catalogue;  // the one before when nothing changed
        bool isUnsettled = false;                    // a file was being written: look again soon
    };
    /// `goOn` is asked at every name; when it answers false the look ends with the catalogue before it.
    [[nodiscard]] Look LookThrough(const Entering& entering, const GoOn& goOn);

  private:
    struct KnownTexts {
        FileStamp stamp;
        std::shared_ptr<const FolderTexts> texts;
    };
    struct KnownFile {
        FileStamp stamp;
        std::shared_ptr<const FolderTexts> texts;
        std::shared_ptr<const FileFacts> facts;  // null for what is not published
        std::shared_ptr<const Publication> publication;
    };
    class Walk;

    Path m_location;
    const AnsiText& m_page;
    Report m_report;
    bool m_wasThere = true;
    std::unordered_map<std::string, KnownFile> m_files;   // by path below the folder
    std::unordered_map<std::string, KnownTexts> m_texts;  // by the path of the file that holds them
    std::shared_ptr<const Catalogue> m_catalogue = std::make_shared<const Catalogue>();
};

}  // namespace quillary
