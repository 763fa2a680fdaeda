#include "cli/Command.h"

#include "cli/Commands.h"
#include "db/Layout.h"

namespace quillary {

namespace {

constexpr CommandOption kJson{"--json", "", "as JSON, for programs"};
constexpr CommandOption kDropForeign{
    "--drop-foreign", "", "write the file although records of other programs and what is damaged in it will be lost"};
constexpr CommandOption kField{"--field", "DEFINITION", "a field; once for each, in their order", true};

// The properties are those of the export's page, without their colons.
constexpr std::string_view kContactDetails =
    "A PROPERTY is one of\n"
    "  Last Name, First Name, Middle Name, Job Title, Department, Company, E-Mail, E-Mail2, E-Mail3, Web Page,\n"
    "  Work Tel, Work2 Tel, Work Fax, Home Tel, Home2 Tel, Home Fax, Mobile Tel, Car Tel, Radio Tel, Pager,\n"
    "  Work Addr, Work City, Work State, Work Zip, Work Country, Home Addr, Home City, Home State, Home Zip,\n"
    "  Home Country, Other Addr, Other City, Other State, Other Zip, Other Country, Office Loc, Assistant,\n"
    "  Assistant Tel, Category, Birthday, Anniversary, Spouse, Children, Notes\n"
    "Contacts go to the address book of the desktop's Evolution where the session has it, else each becomes a file; "
    "the\n"
    "line PersonalStore=files below [Preferences] in ~/.config/Telvane/Quillary.conf makes files always. One that was\n"
    "exported before and is still there stays as it is.";

constexpr std::string_view kDefinitions =
    "A DEFINITION is NAME:TYPE or NAME:TYPE:OPTIONS. NAME ends at the first colon. TYPE is text, number, sequence,\n"
    "checkbox, date, time, list, phone, e-mail or web-url. OPTIONS are separated by \";\":\n"
    "  list:red;green;blue   the items\n"
    "  sequence:100;5        the next value and the increment\n"
    "  checkbox:checked      new records start checked\n"
    "  date:today, time:now  new records start with the present day or time\n"
    "  text:capitalize       the first word gets a capital letter while it is typed";

constexpr CommandOption kListOptions[] = {
    {"--format", "csv|tsv|json|jsonl", "the form of the table (csv)"},
    {"--records", "shown|hidden|all", "which records (shown); all: the shown ones, then the hidden ones"},
    {"--stored", "", "the texts as they are stored, dates and times as counts"},
    {"--iso", "", "for an import: dates as YYYY-MM-DD, times as HH:MM:SS, line ends as they are stored"},
    {"--cells", "", "exactly what the cells of the record list show"},
};
constexpr CommandOption kFindOptions[] = {
    {"--field", "NAME", "in this field alone"},
    {"--after", "ROW", "begin behind this row (0)"},
    {"--all", "", "every matching row"},
};
constexpr CommandOption kFieldsOptions[] = {
    {"--lenient", "", "leave values empty that cannot be converted"},
    kDropForeign,
};
constexpr CommandOption kHashOptions[] = {
    {"--database", "", "as the password of a database"},
    {"--lock", "", "as the lock of an info text"},
};
constexpr CommandOption kNewOptions[] = {
    {"--name", "NAME", "the database's name, at most 28 characters"},
    kField,
};
constexpr CommandOption kImportOptions[] = {
    {"--name", "NAME", "the new database's name (FILE's name without its ending)"},
    kField,
    {"--fit", "", "make the columns as wide as their texts"},
    {"--lenient", "", "store a value that cannot be read as its type empty, and say how many these were"},
    kDropForeign,
};
constexpr CommandOption kRecordOptions[] = {kDropForeign};
constexpr CommandOption kFilterOptions[] = {
    {"--where", "FIELD OP VALUE", "a condition; up to three", true},
    {"--any", "", "show the records that meet any of the conditions (all of them)"},
    {"--narrow", "", "apply the conditions to the records that are shown (all)"},
    kDropForeign,
};
constexpr CommandOption kShowAllOptions[] = {kDropForeign};
constexpr CommandOption kSortOptions[] = {kDropForeign};
constexpr CommandOption kOptionsOptions[] = {
    {"--long-dates", "on|off", "display dates in long format"},
    {"--edit-on-select", "on|off", "on select, go to Edit View"},
    kDropForeign,
};
constexpr CommandOption kPasswordOptions[] = {
    {"--new-password-file", "PATH", "the first line is the new password; an empty one is none"},
    kDropForeign,
};
constexpr CommandOption kTextOptions[] = {
    {"--set", "PATH", "store this text (\"-\": standard input) in place of the present one"},
    {"--lock", "", "lock the text, after --set"},
    {"--unlock", "", "take the lock away, before --set"},
    {"--lock-password-file", "PATH", "the first line is the password of the lock"},
    kDropForeign,
};
constexpr CommandOption kCalendarOptions[] = {
    {"--date", "FIELD", "the date field that gives the day"},
    {"--start", "FIELD", "the time field that gives the start; without a start and an end the whole day"},
    {"--end", "FIELD", "the time field that gives the end"},
    {"--field", "NAME", "a field for the text of the appointment; once for each, in their order", true},
};
constexpr CommandOption kContactsOptions[] = {
    {"--map", "PROPERTY=FIELD", "the field that gives a property; once for each", true},
};
constexpr CommandOption kCatalogueOptions[] = {
    {"--title", "TEXT", "search: a part of the title"},
    {"--category", "NAME", "search: the category"},
    {"--pages", "N", "search: how many pages to fetch (1), or \"all\""},
    {"--json", "", "search, package: print JSON"},
    {"--in-package", "", "download: FILE-ID is the doc id of a file inside a package"},
    {"--name", "NAME", "download: the file's name in the folder TARGET (FILE-ID)"},
    {"--server", "HOST[:PORT]", "the server, instead of those in the preferences"},
};
constexpr CommandOption kJsonOnly[] = {kJson};

constexpr CommandOption kCommonOptions[] = {
    {"--password-file", "PATH", "the first line is the password of a locked database"},
    {"--code-page", "NAME", "the code page of the database's texts (windows-1252)"},
    {"--date-order", "mdy|dmy|ymd", "the order of day, month and year in dates given as numbers (the locale's)"},
    {"--quiet", "", "show no progress"},
    {"--help", "", "print this; so does -h"},
};

constexpr auto kAny = Command::kAnyNumber;

const Command kCommands[] = {
    {"info", "FILE [--json]", "Print the name, counts, options, fields, sort keys, filter and info text", "", 1, 1,
     kJsonOnly, ExitStatus::Refused, RunInfo},
    {"list", "FILE [--format csv|tsv|json|jsonl] [--records shown|hidden|all] [--stored|--iso|--cells]",
     "Print the records as a table",
     "CSV is as in RFC 4180, with a row of names. TSV writes tab, CR, LF and backslash as \\t, \\r, \\n and \\\\.\n"
     "JSON is {\"fields\": [...], \"records\": [[...], ...]}, JSON lines an array for each record.",
     1, 1, kListOptions, ExitStatus::Refused, RunList},
    {"find", "FILE TEXT [--field NAME] [--after ROW] [--all]", "Print the number of the first row that shows a text",
     "Case makes no difference. Rows count from 1. Status 0: found, 1: not found, 3: it could not be searched.", 2, 2,
     kFindOptions, ExitStatus::Failed, RunFind},
    {"fields", "FILE [SCHEMA.json] [--lenient]", "Print the fields as JSON, or change them to those of a JSON file",
     "SCHEMA.json (\"-\" is standard input) has the form that is printed, in the new order. \"from\" is the position "
     "of a\n"
     "field's values now; a field without it is new, and a field of FILE that none comes from is removed with its\n"
     "values. An absent width stays, absent options are the type's defaults. A text that becomes a date is read in "
     "the\n"
     "order that \"convertFrom\" among the options names: M/D/Y (unless it is given), D.M.Y or Y-M-D.",
     1, 2, kFieldsOptions, ExitStatus::Refused, RunFields},
    {"check", "FILE [--json]", "Report everything in which the file departs from the format",
     "Prints OFFSET: TEXT lines. Status 0: nothing to report, 1: something, 3: the file is no database. Needs no\n"
     "password.",
     1, 1, kJsonOnly, ExitStatus::Failed, RunCheck},
    {"hash", "--database|--lock", "Print the hash of a password, read from standard input", "", 0, 0, kHashOptions,
     ExitStatus::Refused, RunHash},
    {"new", "FILE --name NAME --field DEFINITION...", "Make an empty database", kDefinitions, 1, 1, kNewOptions,
     ExitStatus::Refused, RunNew},
    {"import", "TABLE.csv FILE [--name NAME] [--field DEFINITION...] [--fit] [--lenient]",
     "Make a database from a CSV table, or append the table to one",
     "The table is UTF-8 and its first row holds the names of the columns, which are matched to fields by exact name.\n"
     "\"-\" is standard input. When FILE exists its fields stay as they are.\n\n"
     "Without --field a new database gets a field for each column. Where every value of the column that is not empty\n"
     "can be read so without a doubt, its type is:\n"
     "  number    digits with one \".\" and a \"-\" before them; no value begins with 0 and another digit\n"
     "  date      YYYY-MM-DD, March 07, 2004, or three numbers that one order alone fits; years of four digits\n"
     "  time      HH:MM, or with am or pm; no seconds but :00\n"
     "  checkbox  true and false, or yes and no; no value is empty\n"
     "Everything else is text. A table is imported whole or not at all; a message names the row (the header is row 1)\n"
     "and the column that stopped it.\n\n"
     "A DEFINITION is NAME:TYPE or NAME:TYPE:OPTIONS; \"qly help new\" says what they are.",
     2, 2, kImportOptions, ExitStatus::Refused, RunImport},
    {"record", "FILE add [FIELD=VALUE...] | set ROW FIELD=VALUE... | delete ROW | duplicate ROW",
     "Add, change, delete or duplicate one of the shown records",
     "Rows count from 1, as find prints them. Dates are given as YYYY-MM-DD, times as HH:MM.", 2, kAny, kRecordOptions,
     ExitStatus::Refused, RunRecord},
    {"filter", "FILE [--where FIELD OP VALUE]... [--any] [--narrow]", "Hide the records that do not meet conditions",
     "FIELD \"*\" is all fields. OP is one word of the command line, \"is before\":\n"
     "  text, phone, e-mail, web-url, \"*\"  is, contains\n"
     "  number, sequence                  is, is not, less than, greater than\n"
     "  checkbox, list                    is, is not\n"
     "  date, time                        is, is not, is before, is after\n"
     "VALUE has at most 39 bytes in the code page. That of a check box is true or false, that of a list one of its\n"
     "items; dates are given as YYYY-MM-DD, times as HH:MM, and an empty one is none.\n"
     "The conditions replace those that the database has. Without --where it then has none, and records that were\n"
     "hidden stay so; \"qly showall\" shows them.",
     1, 1, kFilterOptions, ExitStatus::Refused, RunFilter},
    {"showall", "FILE", "Remove the filter and show all records", "", 1, 1, kShowAllOptions, ExitStatus::Refused,
     RunShowAll},
    {"sort", "FILE [KEY...]", "Sort the records, and keep them sorted by these fields",
     "A KEY is NAME or NAME:asc, or NAME:desc for descending order; there can be three. A field of exactly the name "
     "that\n"
     "is given goes before an ending. Without a KEY the records stay in their order and no key is stored any more. "
     "Capital\n"
     "letters come before small ones, unreadable dates before all others; keys on phone, e-mail and web-url fields "
     "change\n"
     "nothing.",
     1, 1 + kMaxSortKeys, kSortOptions, ExitStatus::Refused, RunSort},
    {"options", "FILE [--long-dates on|off] [--edit-on-select on|off]", "Print or set the options of a database", "", 1,
     1, kOptionsOptions, ExitStatus::Refused, RunOptions},
    {"password", "FILE set|clear", "Set, change or remove the password of a database",
     "set needs --new-password-file. The present password is given as for every command, for clear too. A password\n"
     "guards the opening in Quillary and qly and enciphers nothing.",
     2, 2, kPasswordOptions, ExitStatus::Refused, RunPassword},
    {"text", "FILE [--set PATH|-] [--lock|--unlock]", "Print or set the info text of a database, lock or unlock it",
     "The text is UTF-8. --set stores the whole file but one last line end. A locked text can be printed, but refuses\n"
     "--set without --unlock, and then stays unlocked. --lock and --unlock need --lock-password-file; an empty "
     "password\n"
     "locks nothing.",
     1, 1, kTextOptions, ExitStatus::Refused, RunText},
    {"calendar", "FILE --date FIELD [--start FIELD] [--end FIELD] [--field NAME]...",
     "Export every shown record as an appointment",
     "The subject is the database's name. Records without a date are exported too, at 30 December 1899, and counted "
     "on\n"
     "standard error. Appointments go to the calendar of the desktop's Evolution where the "
     "session\n"
     "has it, else each becomes a file; the line PersonalStore=files below [Preferences] in\n"
     "~/.config/Telvane/Quillary.conf makes files always. One that was exported before and is still there stays as it\n"
     "is.",
     1, 1, kCalendarOptions, ExitStatus::Refused, nullptr},
    {"contacts", "FILE --map PROPERTY=FIELD...", "Export every shown record as a contact", kContactDetails, 1, 1,
     kContactsOptions, ExitStatus::Refused, nullptr},
    {"catalogue",
     "search [--title TEXT] [--category NAME] [--pages N|all] | details DOC FILE | package DOC FILE | "
     "download FILE-ID TARGET [--in-package] [--name NAME]",
     "Search a catalogue of published databases, and download them",
     "A search prints name, size in kilobytes, kind, doc id and file id with tabs between; a package (kind zip) its "
     "files\n"
     "in the same way and the sum of their sizes. TARGET is a file or a folder that exists; a name that is taken gets\n"
     "\" (2)\". The servers are CatalogueServer=HOST[:PORT] and DownloadServer=HOST[:PORT] below [Preferences] in\n"
     "~/.config/Telvane/Quillary.conf (127.0.0.1:8711).",
     1, 3, kCatalogueOptions, ExitStatus::Refused, nullptr},
};

}  // namespace

std::span<const Command> AllCommands() { return kCommands; }

std::span<const CommandOption> CommonOptions() { return kCommonOptions; }

std::vector<const CommandOption*> OptionsOf(const Command& command) {
    std::vector<const CommandOption*> options;
    for (const CommandOption& option : command.options) options.push_back(&option);
    for (const CommandOption& option : CommonOptions()) options.push_back(&option);
    return options;
}

const Command* CommandNamed(std::string_view name) {
    const auto* found =
        std::find_if(std::begin(kCommands), std::end(kCommands), [name](const Command& c) { return c.name == name; });
    return found == std::end(kCommands) ? nullptr : found;
}

}  // namespace quillary
