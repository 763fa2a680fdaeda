// One state of what is published: the folder that was looked through, and what was found there.
#pragma once

#include <memory>

#include "catalogue-server/CatalogueIndex.h"
#include "catalogue-server/PublishedFolder.h"

namespace quillary {

struct Catalogue {
    Catalogue() = default;
    Catalogue(std::shared_ptr<const PublishedFolder> from, CatalogueIndex::Publications publications)
        : folder(std::move(from)), index(std::move(publications)) {}

    std::shared_ptr<const PublishedFolder> folder;  // null before the first look
    CatalogueIndex index;
};

}  // namespace quillary
