// One contact as an export hands it to the user's address book, and the properties that it can have.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quillary {

/// In the order of the export's page.
enum class ContactProperty : unsigned char {
    LastName,
    FirstName,
    MiddleName,
    JobTitle,
    Department,
    Company,
    WorkPhone,
    WorkFax,
    WorkStreet,
    WorkCity,
    WorkState,
    WorkPostalCode,
    WorkCountry,
    EMail,
    MobilePhone,
    WebPage,
    OfficeLocation,
    HomePhone,
    HomeStreet,
    HomeCity,
    HomeState,
    HomePostalCode,
    HomeCountry,
    Categories,
    OtherStreet,
    OtherCity,
    OtherState,
    OtherPostalCode,
    OtherCountry,
    Pager,
    CarPhone,
    HomeFax,
    WorkPhone2,
    HomePhone2,
    RadioPhone,
    EMail2,
    EMail3,
    AssistantName,
    AssistantPhone,
    Birthday,
    Anniversary,
    Spouse,
    Children,
    Notes,
};
inline constexpr std::size_t kContactProperties = 44;

struct ContactPropertyInfo {
    ContactProperty property;
    int control;  // of its list in the dialog
    std::u16string_view label;
};

// "Department" and "E-Mail" have no colon.
inline constexpr std::array<ContactPropertyInfo, kContactProperties> kContactPropertyTable = {{
    {ContactProperty::LastName, 1002, u"Last Name:"},
    {ContactProperty::FirstName, 1003, u"First Name:"},
    {ContactProperty::MiddleName, 1004, u"Middle Name:"},
    {ContactProperty::JobTitle, 1005, u"Job Title:"},
    {ContactProperty::Department, 1006, u"Department"},
    {ContactProperty::Company, 1007, u"Company:"},
    {ContactProperty::WorkPhone, 1008, u"Work Tel:"},
    {ContactProperty::WorkFax, 1009, u"Work Fax:"},
    {ContactProperty::WorkStreet, 1010, u"Work Addr:"},
    {ContactProperty::WorkCity, 1012, u"Work City:"},
    {ContactProperty::WorkState, 1013, u"Work State:"},
    {ContactProperty::WorkPostalCode, 1014, u"Work Zip:"},
    {ContactProperty::WorkCountry, 1015, u"Work Country:"},
    {ContactProperty::EMail, 1011, u"E-Mail"},
    {ContactProperty::MobilePhone, 1016, u"Mobile Tel:"},
    {ContactProperty::WebPage, 1017, u"Web Page:"},
    {ContactProperty::OfficeLocation, 1018, u"Office Loc:"},
    {ContactProperty::HomePhone, 1019, u"Home Tel:"},
    {ContactProperty::HomeStreet, 1020, u"Home Addr:"},
    {ContactProperty::HomeCity, 1021, u"Home City:"},
    {ContactProperty::HomeState, 1022, u"Home State:"},
    {ContactProperty::HomePostalCode, 1023, u"Home Zip:"},
    {ContactProperty::HomeCountry, 1024, u"Home Country:"},
    {ContactProperty::Categories, 1025, u"Category:"},
    {ContactProperty::OtherStreet, 1026, u"Other Addr:"},
    {ContactProperty::OtherCity, 1027, u"Other City:"},
    {ContactProperty::OtherState, 1028, u"Other State:"},
    {ContactProperty::OtherPostalCode, 1029, u"Other Zip:"},
    {ContactProperty::OtherCountry, 1030, u"Other Country:"},
    {ContactProperty::Pager, 1031, u"Pager:"},
    {ContactProperty::CarPhone, 1032, u"Car Tel:"},
    {ContactProperty::HomeFax, 1033, u"Home Fax:"},
    {ContactProperty::WorkPhone2, 1034, u"Work2 Tel:"},
    {ContactProperty::HomePhone2, 1035, u"Home2 Tel:"},
    {ContactProperty::RadioPhone, 1036, u"Radio Tel:"},
    {ContactProperty::EMail2, 1037, u"E-Mail2:"},
    {ContactProperty::EMail3, 1038, u"E-Mail3:"},
    {ContactProperty::AssistantName, 1039, u"Assistant:"},
    {ContactProperty::AssistantPhone, 1040, u"Assistant Tel:"},
    {ContactProperty::Birthday, 1041, u"Birthday:"},
    {ContactProperty::Anniversary, 1042, u"Anniversary:"},
    {ContactProperty::Spouse, 1043, u"Spouse:"},
    {ContactProperty::Children, 1044, u"Children:"},
    {ContactProperty::Notes, 1045, u"Notes:"},
}};

struct Contact {
    /// By ContactProperty; empty for a property that no field was chosen for. The texts of the two dates are not
    /// stored.
    std::array<std::u16string, kContactProperties> texts;
    std::optional<double> birthday;  // whole days since 30 December 1899, when the text could be read
    std::optional<double> anniversary;
};

}  // namespace quillary
