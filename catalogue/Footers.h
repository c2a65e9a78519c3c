#pragma once
// Every footer line the screens show, in markup, in one place. A footer names
// keys, so it is fixed markup rather than a catalogue text.

namespace Tolm {

// Shared pieces, pasted together by the compiler so that each footer stays
// one literal.
#define TOLM_KEY(key, word) "{color:black}<" key ">{/color} {color:dark-grey}" word "{/color}"
#define TOLM_RIGHT_CANCEL "{align:right}" TOLM_KEY("Esc", "Cancel") "{/align}"
#define TOLM_RIGHT_OK_CANCEL "{align:right}" TOLM_KEY("Enter", "OK") "  " TOLM_KEY("Esc", "Cancel") "{/align}"
#define TOLM_SELECT TOLM_KEY("Up/Down", "Select")
#define TOLM_MENU_KEY(key, word) "{color:white}<" key ">{/color}{color:light-grey} " word "{/color}"
#define TOLM_MENU_RIGHT(word) "{align:right}" TOLM_MENU_KEY("Esc", word) "{/align}"

// Dialogs.
// Acknowledged with Enter.
inline constexpr const char* FOOTER_ENTER_OK = "{align:right}" TOLM_KEY("Enter", "OK") "{/align}";
// Accepted with Enter or cancelled with Esc.
inline constexpr const char* FOOTER_OK_CANCEL = TOLM_RIGHT_OK_CANCEL;
// A question confirmed with Enter.
inline constexpr const char* FOOTER_CONFIRM_CANCEL = TOLM_KEY("Enter", "Confirm") TOLM_RIGHT_CANCEL;
// A dangerous action confirmed with F11.
inline constexpr const char* FOOTER_F11_OK_CANCEL =
    "{align:right}" TOLM_KEY("F11", "OK") "  " TOLM_KEY("Esc", "Cancel") "{/align}";
// A finished operation acknowledged with Enter (its own spacing).
inline constexpr const char* FOOTER_PROGRESS_ENTER_OK =
    "{align:right}{color:black}<Enter>{/color}{color:dark-grey} OK{/color}{/align}";
// Rows to choose from, accepted with Enter or cancelled with Esc.
inline constexpr const char* FOOTER_SELECT_OK_CANCEL = TOLM_SELECT TOLM_RIGHT_OK_CANCEL;
inline constexpr const char* FOOTER_ENTER_RESTART_HOST = "{align:right}" TOLM_KEY("Enter", "Restart Host") "{/align}";
// A dialog with check boxes.
inline constexpr const char* FOOTER_TOGGLE_OK_CANCEL = TOLM_KEY("Space", "Toggle Selected") TOLM_RIGHT_OK_CANCEL;
// Choices marked with Space, with fields of their own.
inline constexpr const char* FOOTER_SELECT_MARK_OK_CANCEL =
    TOLM_SELECT "  " TOLM_KEY("Space", "Mark Selected") TOLM_RIGHT_OK_CANCEL;
// The network adapter list.
inline constexpr const char* FOOTER_DETAILS_TOGGLE_OK_CANCEL =
    TOLM_KEY("D", "View Details") "  " TOLM_KEY("Space", "Toggle Selected") TOLM_RIGHT_OK_CANCEL;
// Shut down or restart.
inline constexpr const char* FOOTER_SHUT_DOWN_RESTART_CANCEL =
    TOLM_KEY("F2", "Shut Down") "  " TOLM_KEY("F11", "Restart") TOLM_RIGHT_CANCEL;
// A list of choices.
inline constexpr const char* FOOTER_SELECT_TOGGLE_OK_CANCEL =
    TOLM_SELECT "  " TOLM_KEY("Space", "Toggle Selected") TOLM_RIGHT_OK_CANCEL;
// The login dialog's left part in PIN mode, shown before FOOTER_OK_CANCEL.
// The stray ">" after "black" is part of the footer as the host shows it.
inline constexpr const char* FOOTER_SWITCH_PIN_LOGIN =
    "{align:left}{color:black>}<F3>{/color} {color:dark-grey}Switch PIN/Password Login{/color}{/align}";

// Menu screens: the left pane, and the right pane of each kind of entry.
inline constexpr const char* FOOTER_MENU_SELECT = "{color:black}<Up/Down>{/color}{color:dark-grey} Select{/color}";
inline constexpr const char* FOOTER_MENU_CHANGE = TOLM_MENU_KEY("Enter", "Change") TOLM_MENU_RIGHT("Log Out");
inline constexpr const char* FOOTER_MENU_MORE = TOLM_MENU_KEY("Enter", "More") TOLM_MENU_RIGHT("Log Out");
// Its own markup: the word's colour is left open.
inline constexpr const char* FOOTER_MENU_RESTART =
    "{color:white}<Enter>{/color} {color:light-grey}Restart" TOLM_MENU_RIGHT("Log Out");
inline constexpr const char* FOOTER_MENU_RUN_TEST = TOLM_MENU_KEY("Enter", "Run Test") TOLM_MENU_RIGHT("Log Out");
inline constexpr const char* FOOTER_MENU_RESET = TOLM_MENU_KEY("Enter", "Reset") TOLM_MENU_RIGHT("Log Out");
// Submenus, whose Esc goes back instead of logging out.
inline constexpr const char* FOOTER_SUBMENU_CHANGE = TOLM_MENU_KEY("Enter", "Change") TOLM_MENU_RIGHT("Exit");
inline constexpr const char* FOOTER_SUBMENU_RESTART = TOLM_MENU_KEY("Enter", "Restart") TOLM_MENU_RIGHT("Exit");
// Entries whose actions take their own keys, named in the help pane.
inline constexpr const char* FOOTER_MENU_LOG_OUT = TOLM_MENU_RIGHT("Log Out");
inline constexpr const char* FOOTER_MENU_PAGES =
    "{color:white}<Page Up>{/color} {color:white}<Page Down>{/color}" TOLM_MENU_RIGHT("Log Out");

// The management network screen and its confirmation.
inline constexpr const char* FOOTER_NETWORK_CHANGE_EXIT =
    TOLM_MENU_KEY("Enter", "Change") "{align:right}{color:white}<Esc> {/color}{color:light-grey}Exit{/color}{/align}";
inline constexpr const char* FOOTER_YES_NO_CANCEL = TOLM_KEY("Y", "Yes") "  " TOLM_KEY("N", "No") TOLM_RIGHT_CANCEL;

#undef TOLM_KEY
#undef TOLM_RIGHT_CANCEL
#undef TOLM_RIGHT_OK_CANCEL
#undef TOLM_SELECT
#undef TOLM_MENU_KEY
#undef TOLM_MENU_RIGHT

}  // namespace Tolm
