// Keeps items in the user's default calendar and address book of Evolution Data Server, which starts when it is asked.
#pragma once

#include <libebook/libebook.h>
#include <libecal/libecal.h>

#include "platform/evolution/ServerCalls.h"
#include "platform/posix/ItemKeeper.h"

namespace quillary {

class EvolutionKeeper : public ItemKeeper {
  public:
    /// Whether the session can have the server.
    [[nodiscard]] bool IsOffered();

    bool Create() override;
    bool LogOn() override;
    std::string Reason() const override { return m_reason; }
    bool KeepEvent(const std::string& text, const std::string& uid) override;
    bool KeepCard(const std::string& text, const std::string& uid) override;

  private:
    ServerCalls m_calls;
    Owned<ESourceRegistry> m_registry;
    Owned<EClient> m_calendar;
    Owned<EClient> m_addressBook;
    std::string m_reason;
};

}  // namespace quillary
