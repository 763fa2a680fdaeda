// Stands in for Evolution's module: QUILLARY_FAKE says what the session has.
#include <cstdlib>
#include <string_view>

#include "platform/posix/EvolutionModule.h"

namespace {

class FakeKeeper : public quillary::ItemKeeper {
  public:
    bool Create() override { return std::string_view(std::getenv("QUILLARY_FAKE")) == "works"; }
    bool LogOn() override { return true; }
    bool KeepEvent(const std::string&, const std::string&) override { return true; }
    bool KeepCard(const std::string&, const std::string&) override { return true; }
};

}  // namespace

extern "C" quillary::ItemKeeper* QuillaryEvolutionKeeper() {
    return std::string_view(std::getenv("QUILLARY_FAKE")) == "none" ? nullptr : new FakeKeeper;
}
