#!/bin/sh
# SPDX-License-Identifier: MIT
# A firmware installer in a dozen lines: choose a slot, confirm, check the image, write it.
# usage: installer.sh IMAGE TARGET-PREFIX   (the slot's letter is added to the prefix)
# On a panel mounted turned, say which way for every command: VANTOR_ROTATION=90 installer.sh ...
image=$1; prefix=$2
# The kernel console stays off the picture between the commands, and comes back at the end.
vantor console off; trap 'vantor console on' EXIT
slot=$(vantor menu --title "Install firmware into" --tag a "Slot A" b "Slot B") || exit 0
vantor yesno "Install $(basename "$image") into slot $slot?" \
    "The device restarts when it is done." || exit 0
for p in 25 50 75 100; do echo "$p"; sleep 0.2; done | vantor gauge --text "Checking the image"
vantor copy --text "Writing slot $slot" "$image" "$prefix$slot" || exit 1
vantor ok "Slot $slot is installed."
