// A contact as vCard 3.0 (RFC 2426), the form in which address books exchange contacts.
#pragma once

#include <string>
#include <string_view>

namespace quillary {

struct Contact;

/// UTF-8 with CR LF line ends. `uid` names the contact for good. Never without a name to list the contact by: the
/// person's, else the company, an e-mail address, a number, or whatever it has.
[[nodiscard]] std::string VCardText(const Contact& contact, std::string_view uid);

}  // namespace quillary
