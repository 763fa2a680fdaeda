#include "integration/PocketOutlook.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

#include "db/Questions.h"
#include "integration/Appointment.h"
#include "integration/Contact.h"
#include "integration/PersonalStore.h"

namespace quillary {

namespace {

// What an item is made of, as 128 bits that are the same on every machine and in every version: the names of items that
// were exported long ago must come out again. Two lanes of multiplication and exclusive or, the first one FNV-1a.
class ItemHash {
  public:
    void Add(std::uint64_t number) {
        for (int shift = 56; shift >= 0; shift -= 8) AddByte(static_cast<std::uint8_t>(number >> shift));
    }
    // Its length goes ahead, so that no two texts run together.
    void Add(std::u16string_view text) {
        Add(text.size());
        for (const char16_t unit : text) {
            AddByte(static_cast<std::uint8_t>(unit >> 8));
            AddByte(static_cast<std::uint8_t>(unit));
        }
    }
    // To the second, so that the last bits of a fraction make no difference.
    void AddTime(double days) {
        constexpr double kSecondsADay = 24 * 60 * 60;
        Add(static_cast<std::uint64_t>(std::llround(days * kSecondsADay)));
    }
    void AddTime(const std::optional<double>& days) {
        Add(days ? 1 : 0);
        if (days) AddTime(*days);
    }

    [[nodiscard]] std::string Hexadecimal() const {
        constexpr char kDigits[] = "0123456789abcdef";
        std::string out;
        for (const std::uint64_t lane : {m_first, m_second}) {
            for (int shift = 60; shift >= 0; shift -= 4) out += kDigits[lane >> shift & 15];
        }
        return out;
    }

  private:
    void AddByte(std::uint8_t byte) {
        m_first = (m_first ^ byte) * 0x100000001B3;
        m_second = (std::rotl(m_second, 23) ^ byte) * 0xFF51AFD7ED558CCD;
    }

    std::uint64_t m_first = 0xCBF29CE484222325;
    std::uint64_t m_second = 0x9E3779B97F4A7C15;
};

std::string HashOf(const Appointment& appointment) {
    ItemHash hash;
    hash.Add(appointment.subject);
    hash.AddTime(appointment.date + appointment.startTime);
    hash.AddTime(appointment.date + appointment.endTime);
    hash.Add(appointment.body);
    return hash.Hexadecimal();
}

std::string HashOf(const Contact& contact) {
    ItemHash hash;
    for (const std::u16string& text : contact.texts) hash.Add(text);
    hash.AddTime(contact.birthday);
    hash.AddTime(contact.anniversary);
    return hash.Hexadecimal();
}

// Good for the name of a file too.
std::string ItemName(const std::string& hash, std::map<std::string, int>& equalItems) {
    return "quillary-" + hash + "-" + std::to_string(++equalItems[hash]);
}

}  // namespace

CPocketOutlook::CPocketOutlook(std::unique_ptr<PersonalStore> store, Questions& questions) {
    Failure failure;
    if (!store || !store->Create()) {
        failure.Set(Message::NoPersonalStore);
    } else if (!store->LogOn()) {
        failure.Set(Message::NoLogOn);
        failure.reason = store->Reason();
    } else {
        m_store = std::move(store);
        return;
    }
    questions.Tell(failure);
}

CPocketOutlook::~CPocketOutlook() = default;

bool CPocketOutlook::CreateAppointment(const Appointment& appointment) {
    return m_store && m_store->AddAppointment(appointment, ItemName(HashOf(appointment), m_equalItems));
}

bool CPocketOutlook::CreateContact(const Contact& contact) {
    return m_store && m_store->AddContact(contact, ItemName(HashOf(contact), m_equalItems));
}

}  // namespace quillary
