// The links that phone numbers, mail addresses and web addresses of a record stand for. Another program gets such a
// link as one argument; it always begins with its scheme, so that it is never taken for an option. Texts are UTF-8.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "db/Messages.h"

namespace quillary {

/// "tel:" and the number without its blanks; what has no place in such a link is percent-encoded.
[[nodiscard]] std::string PhoneLink(std::string_view number);

// nullopt: there is nothing to open. `failure` then says why, or nothing when the text is blank.

/// "mailto:" and the address as it is typed. Headers may stand behind a "?", but only such as show in the mail that
/// opens and do no more: with "attach" a database could send the user's files along, with "bcc" to anyone.
[[nodiscard]] std::optional<std::string> MailLink(std::string_view address, Failure& failure);
/// An address of http or https, or a mail address behind "mailto:". A bare host gets "http://"; blanks and quotes are
/// percent-encoded.
[[nodiscard]] std::optional<std::string> WebLink(std::string_view address, Failure& failure);

}  // namespace quillary
