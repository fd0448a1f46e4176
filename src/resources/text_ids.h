// The numbers of the program's texts, each named once. They never change: they are what a text is known by.
#pragma once

namespace text {

// Notices and questions.
inline constexpr int kPasswordsDiffer = 101;
inline constexpr int kNoPermission = 102;
inline constexpr int kWrongPassword = 103;
inline constexpr int kDeleteCategory = 104;
inline constexpr int kDeleteAppointment = 105;
inline constexpr int kBeingEdited = 106;
inline constexpr int kFromAfterTo = 107;
inline constexpr int kDeleteContact = 108;
inline constexpr int kDataOnServer = 109;
inline constexpr int kPutOnEventsPanel = 110;
inline constexpr int kNotifyParticipants = 111;
inline constexpr int kFileExists = 113;
inline constexpr int kCannotCreateFile = 114;

// The popup menu of appointments.
inline constexpr int kCutItem = 117;
inline constexpr int kCopyItem = 118;
inline constexpr int kPasteItem = 119;
inline constexpr int kNewItem = 120;
inline constexpr int kEditItem = 121;
inline constexpr int kDeleteItem = 122;
inline constexpr int kInternetEventsItem = 123;
inline constexpr int kUndoDeleteItem = 140;
inline constexpr int kOpenAttachmentItem = 142;

// Internet events and the event server.
inline constexpr int kAcceptEvent = 126;
inline constexpr int kInvited = 130;
inline constexpr int kCanceled = 131;
inline constexpr int kAccepted = 132;
inline constexpr int kDeclined = 133;
inline constexpr int kDeleteEvent = 134;
inline constexpr int kPutOnWorksPanel = 135;
inline constexpr int kRegistered = 136;
inline constexpr int kAddressTaken = 137;
inline constexpr int kCannotConnect = 138;
inline constexpr int kUnknownAddress = 139;

// The File menu.
inline constexpr int kNewFileItem = 200;
inline constexpr int kOpenFileItem = 201;
inline constexpr int kSaveAsItem = 202;
inline constexpr int kCompactItem = 203;
inline constexpr int kPasswordsItem = 207;
inline constexpr int kOptionsItem = 208;
inline constexpr int kSkinsItem = 209;
inline constexpr int kExitItem = 210;

// The Help menu.
inline constexpr int kHelpContentsItem = 211;
inline constexpr int kCompanyWebItem = 212;
inline constexpr int kProductWebItem = 213;
inline constexpr int kAboutItem = 214;

// Repeating appointments.
inline constexpr int kRepeatEndsEarly = 500;
inline constexpr int kRepeatNotDragged = 501;

// Series: a month's name is kJanuary + month - 1; a weekday's is kSunday + weekday, its column head and its
// initial stand in the same order.
inline constexpr int kJanuary = 2010;
inline constexpr int kSunday = 2022;
inline constexpr int kUnknownDay = 2029;
inline constexpr int kSundayHead = 2030;
inline constexpr int kSundayInitial = 2037;

// The toolbar's captions and tips.
inline constexpr int kNewButton = 3000;
inline constexpr int kEditButton = 3001;
inline constexpr int kDeleteButton = 3002;
inline constexpr int kFindButton = 3003;
inline constexpr int kFileButton = 3004;
inline constexpr int kHelpButton = 3005;

// Further menu items; the last three are of the File menu.
inline constexpr int kServerSetupItem = 3016;
inline constexpr int kAddressBookItem = 3017;
inline constexpr int kImportItem = 3050;
inline constexpr int kExportItem = 3051;
inline constexpr int kPrintReportItem = 3052;

}  // namespace text
