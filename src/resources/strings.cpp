#include "resources/strings.h"

#include <algorithm>
#include <iterator>
#include <string_view>

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
    {101, "You did not enter the same password. Try again."},
    {102, "You don't have permission for this action."},
    {103, "Can't open this file. Incorrect password."},
    {104, "Do you want to delete this category ?"},
    {105, "Do you want to delete this Tempoline appointment ?"},
    {106, "Can't edit this entry. It is being edited by another user. Try again."},
    {107, "From date must be earlier than the To date."},
    {108, "Do you want to delete this Nameleaf record ?"},
    {109, "Data on server !"},
    {110, "Item put on Events panel."},
    {111,
     "You have made changes to a Internet Event. Would you like to notify the participants of these "
     "changes ?"},
    {113, "This file alredy exists.\r\nPlease selact another file name."},
    {114, "Error in creating a file."},

    // The day list's popup menu; the key after the tab is shown at the right.
    {117, "Cut\tCtrl+X"},
    {118, "Copy\tCtrl+C"},
    {119, "Paste\tCtrl+V"},
    {120, "New...\tInsert"},
    {121, "Edit...\tEnter"},
    {122, "Delete...\tDelete"},
    {123, "Internet Events..."},

    // Internet events and the event server.
    {126, "Do you want to accept this event ?"},
    {130, "%s has invited you to the selected event."},
    {131, "%s has canceld the selected event."},
    {132, "%s has accepted the selected event."},
    {133, "%s has declined the selected event."},
    {134, "Do you want to delete this event ?"},
    {135, "Item put on Works Panel and Outgoing Box."},
    {136, "Registration on server was successful."},
    {137, "User with this e-mail address already exist."},
    {138, "Unable to connect to server"},
    {139, "User with %s address does not exist on Zarf server."},

    // The rest of the popup menu.
    {140, "Undo delete\tCtrl+Z"},
    {142, "Open attachment...\tCtrl+A"},

    // The File menu.
    {200, "&New...\tCtrl+N"},
    {201, "&Open...\tCtrl+O"},
    {202, "&Save As..."},
    {203, "Co&mpact..."},
    {204, "&Import..."},
    {205, "&Export..."},
    {206, "&Print Report..\tCtrl+P"},
    {207, "Network P&asswords..."},
    {208, "General O&ptions..."},
    {209, "Ski&ns..."},
    {210, "&Exit"},

    // The Help menu.
    {211, "&Contents...\tF1"},
    {212, "&Company Web"},
    {213, "&Daybrix Web"},
    {214, "About..."},

    // Repeating appointments.
    {500,
     "Repeat event.\r\n\r\nYou have entered an invalid date. The\r\n"
     "end date must occur after the start date."},
    {501,
     "Date of a repeat appointment cannot be changed using \n"
     "drag & drop. In order to change the date of a repeat \n"
     "appointment, double click on the appointment or right \n"
     "click and select Edit item from the menu."},

    // Months, from 2009 + month.
    {2010, "January"},
    {2011, "February"},
    {2012, "March"},
    {2013, "April"},
    {2014, "May"},
    {2015, "June"},
    {2016, "July"},
    {2017, "August"},
    {2018, "September"},
    {2019, "October"},
    {2020, "November"},
    {2021, "December"},

    // Weekdays from Sunday on: the name at 2022, the column head at 2030, the initial at 2037.
    {2022, "Sunday"},
    {2023, "Monday"},
    {2024, "Tuesday"},
    {2025, "Wednesday"},
    {2026, "Thursday"},
    {2027, "Friday"},
    {2028, "Saturday"},
    {2029, "Unknown"},
    {2030, "Su"},
    {2031, "Mo"},
    {2032, "Tu"},
    {2033, "We"},
    {2034, "Th"},
    {2035, "Fr"},
    {2036, "Sa"},
    {2037, "S"},
    {2038, "M"},
    {2039, "T"},
    {2040, "W"},
    {2041, "T"},
    {2042, "F"},
    {2043, "S"},

    // The toolbar's captions and tips.
    {3000, "New"},
    {3001, "Edit"},
    {3002, "Del"},
    {3003, "Find"},
    {3004, "File"},
    {3005, "Help"},

    // Menu items.
    {3016, "Zarf &Server Setup"},
    {3050, "&Import..."},
    {3051, "&Export..."},
    {3052, "&Print Report..\tCtrl+P"},
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
