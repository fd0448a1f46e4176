#include "resources/strings.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "resources/text_ids.h"

namespace resources {
namespace {

struct Text {
  int id;
  const char* text;
};

// Ordered by number for the binary search below. The spelling is part of the texts and known to their
// readers: "alredy", "selact" and "canceld" are to stay as they are.
constexpr Text kTexts[] = {
    // Notices and questions.
    {text::kPasswordsDiffer, "You did not enter the same password. Try again."},
    {text::kNoPermission, "You don't have permission for this action."},
    {text::kWrongPassword, "Can't open this file. Incorrect password."},
    {text::kDeleteCategory, "Do you want to delete this category ?"},
    {text::kDeleteAppointment, "Do you want to delete this Tempoline appointment ?"},
    {text::kBeingEdited, "Can't edit this entry. It is being edited by another user. Try again."},
    {text::kFromAfterTo, "From date must be earlier than the To date."},
    {text::kDeleteContact, "Do you want to delete this Nameleaf record ?"},
    {text::kDataOnServer, "Data on server !"},
    {text::kPutOnEventsPanel, "Item put on Events panel."},
    {text::kNotifyParticipants,
     "You have made changes to a Internet Event. Would you like to notify the participants of these "
     "changes ?"},
    {text::kFileExists, "This file alredy exists.\r\nPlease selact another file name."},
    {text::kCannotCreateFile, "Error in creating a file."},

    // The day list's popup menu; the key after the tab is shown at the right.
    {text::kCutItem, "Cut\tCtrl+X"},
    {text::kCopyItem, "Copy\tCtrl+C"},
    {text::kPasteItem, "Paste\tCtrl+V"},
    {text::kNewItem, "New...\tInsert"},
    {text::kEditItem, "Edit...\tEnter"},
    {text::kDeleteItem, "Delete...\tDelete"},
    {text::kInternetEventsItem, "Internet Events..."},

    // Internet events and the event server.
    {text::kAcceptEvent, "Do you want to accept this event ?"},
    {text::kInvited, "%s has invited you to the selected event."},
    {text::kCanceled, "%s has canceld the selected event."},
    {text::kAccepted, "%s has accepted the selected event."},
    {text::kDeclined, "%s has declined the selected event."},
    {text::kDeleteEvent, "Do you want to delete this event ?"},
    {text::kPutOnWorksPanel, "Item put on Works Panel and Outgoing Box."},
    {text::kRegistered, "Registration on server was successful."},
    {text::kAddressTaken, "User with this e-mail address already exist."},
    {text::kCannotConnect, "Unable to connect to server"},
    {text::kUnknownAddress, "User with %s address does not exist on Zarf server."},

    // The rest of the popup menu.
    {text::kUndoDeleteItem, "Undo delete\tCtrl+Z"},
    {text::kOpenAttachmentItem, "Open attachment...\tCtrl+A"},

    // The File menu.
    {text::kNewFileItem, "&New...\tCtrl+N"},
    {text::kOpenFileItem, "&Open...\tCtrl+O"},
    {text::kSaveAsItem, "&Save As..."},
    {text::kCompactItem, "Co&mpact..."},
    {text::kPasswordsItem, "Network P&asswords..."},
    {text::kOptionsItem, "General O&ptions..."},
    {text::kSkinsItem, "Ski&ns..."},
    {text::kExitItem, "&Exit"},

    // The Help menu.
    {text::kHelpContentsItem, "&Contents...\tF1"},
    {text::kCompanyWebItem, "&Company Web"},
    {text::kProductWebItem, "&Daybrix Web"},
    {text::kAboutItem, "About..."},

    // Repeating appointments.
    {text::kRepeatEndsEarly,
     "Repeat event.\r\n\r\nYou have entered an invalid date. The\r\n"
     "end date must occur after the start date."},
    {text::kRepeatNotDragged,
     "Date of a repeat appointment cannot be changed using \n"
     "drag & drop. In order to change the date of a repeat \n"
     "appointment, double click on the appointment or right \n"
     "click and select Edit item from the menu."},

    // Months, from 2009 + month.
    {text::kJanuary, "January"},
    {text::kJanuary + 1, "February"},
    {text::kJanuary + 2, "March"},
    {text::kJanuary + 3, "April"},
    {text::kJanuary + 4, "May"},
    {text::kJanuary + 5, "June"},
    {text::kJanuary + 6, "July"},
    {text::kJanuary + 7, "August"},
    {text::kJanuary + 8, "September"},
    {text::kJanuary + 9, "October"},
    {text::kJanuary + 10, "November"},
    {text::kJanuary + 11, "December"},

    // Weekdays from Sunday on: the name at 2022, the column head at 2030, the initial at 2037.
    {text::kSunday, "Sunday"},
    {text::kSunday + 1, "Monday"},
    {text::kSunday + 2, "Tuesday"},
    {text::kSunday + 3, "Wednesday"},
    {text::kSunday + 4, "Thursday"},
    {text::kSunday + 5, "Friday"},
    {text::kSunday + 6, "Saturday"},
    {text::kUnknownDay, "Unknown"},
    {text::kSundayHead, "Su"},
    {text::kSundayHead + 1, "Mo"},
    {text::kSundayHead + 2, "Tu"},
    {text::kSundayHead + 3, "We"},
    {text::kSundayHead + 4, "Th"},
    {text::kSundayHead + 5, "Fr"},
    {text::kSundayHead + 6, "Sa"},
    {text::kSundayInitial, "S"},
    {text::kSundayInitial + 1, "M"},
    {text::kSundayInitial + 2, "T"},
    {text::kSundayInitial + 3, "W"},
    {text::kSundayInitial + 4, "T"},
    {text::kSundayInitial + 5, "F"},
    {text::kSundayInitial + 6, "S"},

    // The toolbar's captions and tips.
    {text::kNewButton, "New"},
    {text::kEditButton, "Edit"},
    {text::kDeleteButton, "Del"},
    {text::kFindButton, "Find"},
    {text::kFileButton, "File"},
    {text::kHelpButton, "Help"},

    // Menu items.
    {text::kServerSetupItem, "Zarf &Server Setup"},
    {text::kAddressBookItem, "Name&leaf..."},
    {text::kImportItem, "&Import..."},
    {text::kExportItem, "&Export..."},
    {text::kPrintReportItem, "&Print Report..\tCtrl+P"},
};

// Message boxes read a text into 255 characters with the terminator; a longer one would lose its end
// unnoticed.
constexpr size_t kLongestText = 254;

constexpr bool IsAscending() {
  return std::adjacent_find(std::begin(kTexts), std::end(kTexts), [](const Text& left, const Text& right) {
           return left.id >= right.id;
         }) == std::end(kTexts);
}

constexpr bool IsShowable(const Text& entry) {
  const std::string_view text(entry.text);
  return !text.empty() && text.size() <= kLongestText &&
         std::all_of(text.begin(), text.end(), [](char c) { return c > '\0' && c < '\x7f'; });
}

static_assert(IsAscending(), "the texts are found by binary search: numbers ascend and none comes twice");
static_assert(std::all_of(std::begin(kTexts), std::end(kTexts), IsShowable),
              "a text is plain ASCII, not empty, and fits a message box");

}  // namespace

const char* FindText(int id) {
  const Text* const found = std::lower_bound(std::begin(kTexts), std::end(kTexts), id,
                                             [](const Text& entry, int wanted) { return entry.id < wanted; });
  return found != std::end(kTexts) && found->id == id ? found->text : "";
}

}  // namespace resources
