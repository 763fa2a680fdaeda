#include "integration/ExportContacts.h"

namespace quillary {

Contact MakeContact(const CQuillaryDoc& doc, std::size_t row, const ContactFields& fields, const DateHabits& habits) {
    const RecordValues values(doc, row);
    Contact contact;
    for (std::size_t k = 0; k < fields.size(); ++k) {
        switch (static_cast<ContactProperty>(k)) {
            case ContactProperty::Birthday:
                contact.birthday = values.Day(fields[k], habits);
                break;
            case ContactProperty::Anniversary:
                contact.anniversary = values.Day(fields[k], habits);
                break;
            default:
                contact.texts[k] = values.Text(fields[k]);
        }
    }
    return contact;
}

}  // namespace quillary
