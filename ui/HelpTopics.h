// The topics of the help book, by the anchors in ui/help/Quillary.htm.
#pragma once

#include <string_view>

namespace quillary {

inline constexpr std::string_view kTopicContents = "Contents";
inline constexpr std::string_view kTopicAbout = "About";
inline constexpr std::string_view kTopicChangePassword = "Change_Password";
inline constexpr std::string_view kTopicDatabaseInfo = "Database_Info";
inline constexpr std::string_view kTopicCreateDatabase = "Create_Database";
inline constexpr std::string_view kTopicDatabaseOptions = "Database_Options";
inline constexpr std::string_view kTopicDocumentList = "Document_List";
inline constexpr std::string_view kTopicEditRecord = "Edit_Record";
inline constexpr std::string_view kTopicEnterLockPassword = "Enter_Lock_Password";
inline constexpr std::string_view kTopicEnterPassword = "Enter_Password";
inline constexpr std::string_view kTopicExportToCalendar = "Export_To_Calendar";
inline constexpr std::string_view kTopicExportToContacts = "Export_To_Contacts";
inline constexpr std::string_view kTopicFieldDefinitions = "Field_Definitions";
inline constexpr std::string_view kTopicFieldTypeText = "Datatype_Details_Text";
inline constexpr std::string_view kTopicFieldTypeNumber = "Datatype_Details_Number";
inline constexpr std::string_view kTopicFieldTypeSequence = "Datatype_Details_Sequence";
inline constexpr std::string_view kTopicFieldTypeCheckbox = "Datatype_Details_Checkbox";
inline constexpr std::string_view kTopicFieldTypeDate = "Datatype_Details_Date";
inline constexpr std::string_view kTopicFieldTypeTime = "Datatype_Details_Time";
inline constexpr std::string_view kTopicFieldTypeList = "Datatype_Details_List";
inline constexpr std::string_view kTopicFieldTypePhone = "Datatype_Details_Phone";
inline constexpr std::string_view kTopicFieldTypeEMail = "Datatype_Details_EMail";
inline constexpr std::string_view kTopicFieldTypeUrl = "Datatype_Details_URL";
inline constexpr std::string_view kTopicFilterRecords = "Filter_Records";
inline constexpr std::string_view kTopicFindRecord = "Find_Record";
inline constexpr std::string_view kTopicPath = "Path";
inline constexpr std::string_view kTopicPhoneDial = "Phone_Dial";
inline constexpr std::string_view kTopicPreferences = "Quillary_Preferences";
inline constexpr std::string_view kTopicRecordList = "Record_List";
inline constexpr std::string_view kTopicRemoteResults = "Remote_Results";
inline constexpr std::string_view kTopicRemoteSearch = "Remote_Search";
inline constexpr std::string_view kTopicSortRecords = "Sort_Records";

inline constexpr std::string_view kAllTopics[] = {
    kTopicContents,          kTopicAbout,
    kTopicChangePassword,    kTopicCreateDatabase,
    kTopicDatabaseInfo,      kTopicDatabaseOptions,
    kTopicDocumentList,      kTopicEditRecord,
    kTopicEnterLockPassword, kTopicEnterPassword,
    kTopicExportToCalendar,  kTopicExportToContacts,
    kTopicFieldDefinitions,  kTopicFieldTypeText,
    kTopicFieldTypeNumber,   kTopicFieldTypeSequence,
    kTopicFieldTypeCheckbox, kTopicFieldTypeDate,
    kTopicFieldTypeTime,     kTopicFieldTypeList,
    kTopicFieldTypePhone,    kTopicFieldTypeEMail,
    kTopicFieldTypeUrl,      kTopicFilterRecords,
    kTopicFindRecord,        kTopicPath,
    kTopicPhoneDial,         kTopicPreferences,
    kTopicRecordList,        kTopicRemoteResults,
    kTopicRemoteSearch,      kTopicSortRecords,
};

}  // namespace quillary
