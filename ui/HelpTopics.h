// The topics of the help book, by the anchors in ui/help/Quillary.htm.
#pragma once

#include <string_view>

namespace quillary {

inline constexpr std::string_view kTopicContents = "Contents";
inline constexpr std::string_view kTopicAbout = "About";
inline constexpr std::string_view kTopicChangePassword = "Change_Password";
inline constexpr std::string_view kTopicDatabaseInfo = "Database_Info";
inline constexpr std::string_view kTopicDatabaseOptions = "Database_Options";
inline constexpr std::string_view kTopicDocumentList = "Document_List";
inline constexpr std::string_view kTopicEditRecord = "Edit_Record";
inline constexpr std::string_view kTopicEnterLockPassword = "Enter_Lock_Password";
inline constexpr std::string_view kTopicEnterPassword = "Enter_Password";
inline constexpr std::string_view kTopicFindRecord = "Find_Record";
inline constexpr std::string_view kTopicRecordList = "Record_List";

inline constexpr std::string_view kAllTopics[] = {
    kTopicContents,        kTopicAbout,        kTopicChangePassword, kTopicDatabaseInfo,
    kTopicDatabaseOptions, kTopicDocumentList, kTopicEditRecord,     kTopicEnterLockPassword,
    kTopicEnterPassword,   kTopicFindRecord,   kTopicRecordList,
};

}  // namespace quillary
