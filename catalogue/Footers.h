#pragma once
// Every footer line the screens show, in markup, in one place. A footer names
// keys, so it is fixed markup rather than a catalogue text.

namespace Tolm {

// Dialogs.
// Acknowledged with Enter.
inline constexpr const char* FOOTER_ENTER_OK =
    "{align:right}{color:black}<Enter>{/color} {color:dark-grey}OK{/color}{/align}";
// Accepted with Enter or cancelled with Esc.
inline constexpr const char* FOOTER_OK_CANCEL =
    "{align:right}{color:black}<Enter>{/color} {color:dark-grey}OK{/color}  "
    "{color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";
// A question confirmed with Enter.
inline constexpr const char* FOOTER_CONFIRM_CANCEL =
    "{color:black}<Enter>{/color} {color:dark-grey}Confirm{/color}"
    "{align:right}{color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";
// A dangerous action confirmed with F11.
inline constexpr const char* FOOTER_F11_OK_CANCEL =
    "{align:right}{color:black}<F11>{/color} {color:dark-grey}OK{/color}  {color:black}<Esc>{/color} "
    "{color:dark-grey}Cancel{/color}{/align}";
// A finished operation acknowledged with Enter (its own spacing).
inline constexpr const char* FOOTER_PROGRESS_ENTER_OK =
    "{align:right}{color:black}<Enter>{/color}{color:dark-grey} OK{/color}{/align}";
// Rows to choose from, accepted with Enter or cancelled with Esc.
inline constexpr const char* FOOTER_SELECT_OK_CANCEL =
    "{color:black}<Up/Down>{/color} {color:dark-grey}Select{/color}{align:right}{color:black}<Enter>{/color} "
    "{color:dark-grey}OK{/color}  {color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";
inline constexpr const char* FOOTER_ENTER_RESTART_HOST =
    "{align:right}{color:black}<Enter>{/color} {color:dark-grey}Restart Host{/color}{/align}";
// A dialog with check boxes.
inline constexpr const char* FOOTER_TOGGLE_OK_CANCEL =
    "{color:black}<Space>{/color} {color:dark-grey}Toggle Selected{/color}"
    "{align:right}{color:black}<Enter>{/color} {color:dark-grey}OK{/color}  "
    "{color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";
// Choices marked with Space, with fields of their own.
inline constexpr const char* FOOTER_SELECT_MARK_OK_CANCEL =
    "{color:black}<Up/Down>{/color} {color:dark-grey}Select{/color}  {color:black}<Space>{/color} "
    "{color:dark-grey}Mark Selected{/color}{align:right}{color:black}<Enter>{/color} {color:dark-grey}OK{/color}  "
    "{color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";
// The network adapter list.
inline constexpr const char* FOOTER_DETAILS_TOGGLE_OK_CANCEL =
    "{color:black}<D>{/color} {color:dark-grey}View Details{/color}  {color:black}<Space>{/color} "
    "{color:dark-grey}Toggle Selected{/color}{align:right}{color:black}<Enter>{/color} {color:dark-grey}OK{/color}  "
    "{color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";
// Shut down or restart.
inline constexpr const char* FOOTER_SHUT_DOWN_RESTART_CANCEL =
    "{color:black}<F2>{/color} {color:dark-grey}Shut Down{/color}  {color:black}<F11>{/color} "
    "{color:dark-grey}Restart{/color}{align:right}{color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";
// A list of choices.
inline constexpr const char* FOOTER_SELECT_TOGGLE_OK_CANCEL =
    "{color:black}<Up/Down>{/color} {color:dark-grey}Select{/color}  {color:black}<Space>{/color} "
    "{color:dark-grey}Toggle Selected{/color}{align:right}{color:black}<Enter>{/color} {color:dark-grey}OK{/color}  "
    "{color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";
// The login dialog's left part in PIN mode, shown before FOOTER_OK_CANCEL.
// The stray ">" after "black" is part of the footer as the host shows it.
inline constexpr const char* FOOTER_SWITCH_PIN_LOGIN =
    "{align:left}{color:black>}<F3>{/color} {color:dark-grey}Switch PIN/Password Login{/color}{/align}";

// Menu screens: the left pane, and the right pane of each kind of entry.
inline constexpr const char* FOOTER_MENU_SELECT = "{color:black}<Up/Down>{/color}{color:dark-grey} Select{/color}";
inline constexpr const char* FOOTER_MENU_CHANGE =
    "{color:white}<Enter>{/color}{color:light-grey} Change{/color}{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Log Out{/color}{/align}";
inline constexpr const char* FOOTER_MENU_MORE =
    "{color:white}<Enter>{/color}{color:light-grey} More{/color}{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Log Out{/color}{/align}";
inline constexpr const char* FOOTER_MENU_RESTART =
    "{color:white}<Enter>{/color} {color:light-grey}Restart{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Log Out{/color}{/align}";
inline constexpr const char* FOOTER_MENU_RUN_TEST =
    "{color:white}<Enter>{/color}{color:light-grey} Run Test{/color}{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Log Out{/color}{/align}";
inline constexpr const char* FOOTER_MENU_RESET =
    "{color:white}<Enter>{/color}{color:light-grey} Reset{/color}{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Log Out{/color}{/align}";
// Submenus, whose Esc goes back instead of logging out.
inline constexpr const char* FOOTER_SUBMENU_CHANGE =
    "{color:white}<Enter>{/color}{color:light-grey} Change{/color}{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Exit{/color}{/align}";
inline constexpr const char* FOOTER_SUBMENU_RESTART =
    "{color:white}<Enter>{/color}{color:light-grey} Restart{/color}{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Exit{/color}{/align}";
// Entries whose actions take their own keys, named in the help pane.
inline constexpr const char* FOOTER_MENU_LOG_OUT =
    "{align:right}{color:white}<Esc>{/color}{color:light-grey} Log Out{/color}{/align}";
inline constexpr const char* FOOTER_MENU_PAGES =
    "{color:white}<Page Up>{/color} {color:white}<Page Down>{/color}{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Log Out{/color}{/align}";

// The management network screen and its confirmation.
inline constexpr const char* FOOTER_NETWORK_CHANGE_EXIT =
    "{color:white}<Enter>{/color}{color:light-grey} Change{/color}{align:right}{color:white}<Esc> {/color}"
    "{color:light-grey}Exit{/color}{/align}";
inline constexpr const char* FOOTER_YES_NO_CANCEL =
    "{color:black}<Y>{/color} {color:dark-grey}Yes{/color}  {color:black}<N>{/color} {color:dark-grey}No{/color}"
    "{align:right}{color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";

}  // namespace Tolm
