-- Every Apple event that Velmora sends stands in this file. The application compiles it when it starts and calls the
-- handlers of the first half by name, with positional arguments; ScriptHandlers.h has their table.
--
-- Windows and tabs. Since macOS 10.13 each native tab is a scripting window of its own that holds one tab; before,
-- a window held several. Both are served: a tab is always "tab j of window id w". A window can also hold no tab at
-- all and stay invisible for the life of Terminal; asking it for its tabs is an error, so each window is asked by
-- itself. Windows are addressed by id only, since a click changes their order.
--
-- Errors. A "try" hands the errors of passOn to its caller unchanged; by their number the application tells the user
-- what to do. Numbers of our own: 1010 the tab is busy, 1011 its shell has ended, 1012 it is not in front, 1013 it is
-- not on the screen, 1014 its window did not close. A tab that is gone is -1728, Terminal not running -600.
--
-- Names. Inside "tell" Terminal's own words win (tab, window, tty, busy, title, ...), so no name here is one of them,
-- and own handlers are called with "my". Results are positional lists: a record's labels would be such words too.
--
-- scripts/checkAppleScript.py checks all this as far as it can be seen without a Mac.

-- Terminal's state: {whether it runs, the number of its windows that hold a tab}. Does not launch Terminal.
on bridgeStatus()
	if not my terminalRuns() then return {false, 0}
	set windowNumbers to my idsOfWindows()
	set openCount to 0
	repeat with place from 1 to count of windowNumbers
		if my tabCount(item place of windowNumbers) > 0 then set openCount to openCount + 1
	end repeat
	return {true, openCount}
end bridgeStatus

-- Whether Velmora may press keys: {answer}. The first call makes the system ask for consent. The question goes away
-- with the event that raised it, and the system itself gives the user two minutes for it.
on systemEventsStatus()
	with timeout of 150 seconds
		tell application id "com.apple.systemevents" to set keysAllowed to UI elements enabled
	end timeout
	return {keysAllowed}
end systemEventsStatus

-- Every tab, the windows from front to back: rows {tty, window id, window index, tab index, title, busy, selected}. The
-- window index is Terminal's own, which counts windows without tabs too.
-- With no tab at all one row without items, because the application takes an empty list for a broken script.
on listSessions()
	my requireTerminal()
	set windowNumbers to my idsOfWindows()
	set tabRows to {}
	repeat with place from 1 to count of windowNumbers
		set windowNumber to item place of windowNumbers
		repeat with tabNumber from 1 to my tabCount(windowNumber)
			set ttyName to my ttyOf(windowNumber, tabNumber)
			if ttyName is not "" then
				set end of tabRows to my rowOf(ttyName, windowNumber, place, tabNumber)
			end if
		end repeat
	end repeat
	set tabRows to my withoutEndedTwins(tabRows)
	if (count of tabRows) is 0 then return {{}}
	return tabRows
end listSessions

-- Opens one window, starting Terminal if need be, and returns the row of its tab. A window that was there before, or
-- that Terminal brings back from last time, is never taken for the new one.
on createWindow()
	if not my terminalRuns() then my startTerminal()
	set oldNumbers to my idsOfWindows()
	set oldTotals to {}
	repeat with place from 1 to count of oldNumbers
		set end of oldTotals to my tabCount(item place of oldNumbers)
	end repeat
	with timeout of 10 seconds
		tell application id "com.apple.Terminal" to set newTab to do script ""
	end timeout
	return my rowOfNewTab(newTab, oldNumbers, oldTotals)
end createWindow

-- Types a command and Return into a tab. A busy one is refused unless allowed.
on sendCommand(commandText, ttyName, windowNumber, busyAllowed)
	set tabNumber to my tabForInput(ttyName, windowNumber, busyAllowed)
	with timeout of 10 seconds
		tell application id "com.apple.Terminal" to do script commandText in tab tabNumber of window id windowNumber
	end timeout
	return true
end sendCommand

-- Presses a key in a tab. With a pressCount of 0 it brings the tab to the front and presses nothing; with any other it
-- never does, so whoever clicks elsewhere is left alone. Before each press the tab must still be in front; the system
-- gives the key to whatever is, so the application has asked the window server, too.
on sendKey(keyNumber, pressCount, ttyName, windowNumber, busyAllowed)
	set tabNumber to my tabForInput(ttyName, windowNumber, busyAllowed)
	if pressCount is 0 and not my bringToFront(windowNumber, tabNumber) then
		error "The tab did not come to the front." number 1012
	end if
	repeat with pressNumber from 1 to pressCount
		if pressNumber > 1 then delay 0.03
		if not my isInFront(windowNumber, tabNumber) then
			error "Another window came to the front after " & (pressNumber - 1) & " presses." number 1012
		end if
		with timeout of 10 seconds
			tell application id "com.apple.systemevents" to key code keyNumber
		end timeout
	end repeat
	return true
end sendKey

-- The text of a tab, "history" with its scroll-back, else what is on its screen, without the empty lines at the end:
-- {at most maxCharacters of its end, the number of characters before cutting}.
on readOutput(sourceName, maxCharacters, ttyName, windowNumber)
	set tabNumber to my tabOf(ttyName, windowNumber)
	with timeout of 20 seconds
		if sourceName is "history" then
			tell application id "com.apple.Terminal" to set shownText to history of tab tabNumber of window id windowNumber
		else
			tell application id "com.apple.Terminal" to set shownText to contents of tab tabNumber of window id windowNumber
		end if
	end timeout
	set shownText to my withoutEmptyEnd(my textOrEmpty(shownText))
	set characterTotal to length of shownText
	if characterTotal > maxCharacters then set shownText to text (-maxCharacters) thru -1 of shownText
	return {shownText, characterTotal}
end readOutput

-- Where a tab's window is: {left, top, right, bottom} in points from the main display's upper left corner. A tab that
-- is not on the screen has no picture and is refused; nothing is moved.
on captureBounds(ttyName, windowNumber)
	set tabNumber to my tabOf(ttyName, windowNumber)
	with timeout of 5 seconds
		tell application id "com.apple.Terminal" to set isInDock to miniaturized of window id windowNumber
		tell application id "com.apple.Terminal" to set edgeList to bounds of window id windowNumber
	end timeout
	if isInDock or not (my isShown(windowNumber) and my isSelected(windowNumber, tabNumber)) then
		error "The tab is not on the screen." number 1013
	end if
	set {leftEdge, topEdge, rightEdge, bottomEdge} to edgeList
	return {leftEdge as integer, topEdge as integer, rightEdge as integer, bottomEdge as integer}
end captureBounds

-- Brings a tab to the front, out of the Dock if it is there. Terminal's word that it did not come is no error here: it
-- is sometimes old, and the user sees what is in front.
on focusSession(ttyName, windowNumber)
	my bringToFront(windowNumber, my tabOf(ttyName, windowNumber))
	return true
end focusSession

-- Closes a window. Terminal may ask the user first when something runs in it; then it is still to be seen. A closed one
-- may stay in Terminal's list.
on closeWindow(windowNumber)
	my requireTerminal()
	with timeout of 10 seconds
		tell application id "com.apple.Terminal" to close window id windowNumber saving no
	end timeout
	repeat 10 times
		if my tabCount(windowNumber) is 0 or not my isShown(windowNumber) then return true
		delay 0.1
	end repeat
	error "The window did not close." number 1014
end closeWindow

-- Below, what the handlers above share.

-- Whether Terminal runs. The system answers; no event is sent and nothing is launched. For some milliseconds now and
-- then it does not see a running application, so a no must be said twice.
on terminalRuns()
	if application id "com.apple.Terminal" is running then return true
	delay 0.05
	return application id "com.apple.Terminal" is running
end terminalRuns

-- Refuses to go on without Terminal; any event would launch it.
on requireTerminal()
	if not my terminalRuns() then error "Terminal is not running." number -600
end requireTerminal

-- Raises again what no "try" may keep, which is every error but the four by which Terminal says that a window, a tab
-- or a value is not there: a handler that failed (-10000), no such object (-1728, -1719), not understood (-1708). A
-- refusal, a time-out or an unknown error taken for "nothing there" would make every tab look gone.
on passOn(errorText, errorNumber)
	if {-10000, -1728, -1719, -1708} does not contain {errorNumber} then error errorText number errorNumber
end passOn

-- The value as text; nothing for what Terminal does not know yet.
on textOrEmpty(someValue)
	if someValue is missing value then return ""
	return someValue as text
end textOrEmpty

-- The ids of all windows, the front one first, read at once: going through the windows themselves fails on macOS 15.
on idsOfWindows()
	with timeout of 5 seconds
		tell application id "com.apple.Terminal" to set windowNumbers to id of every window
	end timeout
	return windowNumbers
end idsOfWindows

-- The number of tabs of a window; 0 for one that holds none or has just closed.
on tabCount(windowNumber)
	try
		with timeout of 5 seconds
			tell application id "com.apple.Terminal" to set tabTotal to count of tabs of window id windowNumber
		end timeout
	on error errorText number errorNumber
		my passOn(errorText, errorNumber)
		return 0
	end try
	return tabTotal
end tabCount

-- A tab's device path, such as /dev/ttys003; empty while it has none.
on ttyOf(windowNumber, tabNumber)
	try
		with timeout of 5 seconds
			tell application id "com.apple.Terminal" to set ttyName to tty of tab tabNumber of window id windowNumber
		end timeout
	on error errorText number errorNumber
		my passOn(errorText, errorNumber)
		return ""
	end try
	return my textOrEmpty(ttyName)
end ttyOf

-- What the title bar says; for a tab behind others of its window, its own title.
on titleOf(windowNumber, tabNumber, inFront)
	try
		with timeout of 5 seconds
			if inFront then
				tell application id "com.apple.Terminal" to set titleText to name of window id windowNumber
			else
				tell application id "com.apple.Terminal" to set titleText to custom title of tab tabNumber of window id windowNumber
			end if
		end timeout
	on error errorText number errorNumber
		my passOn(errorText, errorNumber)
		return ""
	end try
	return my textOrEmpty(titleText)
end titleOf

-- Whether a window is to be seen, or would be if nothing covered it. One that is closed or hidden is not.
on isShown(windowNumber)
	try
		with timeout of 5 seconds
			tell application id "com.apple.Terminal" to set shownNow to visible of window id windowNumber
		end timeout
	on error errorText number errorNumber
		my passOn(errorText, errorNumber)
		return false
	end try
	return shownNow is true
end isShown

-- Whether a tab is the selected one of its window.
on isSelected(windowNumber, tabNumber)
	try
		with timeout of 5 seconds
			tell application id "com.apple.Terminal" to set selectedNow to selected of tab tabNumber of window id windowNumber
		end timeout
	on error errorText number errorNumber
		my passOn(errorText, errorNumber)
		return false
	end try
	return selectedNow is true
end isSelected

-- The names of the programs in a tab, such as {"login", "-zsh", "node"}; missing value when Terminal does not say.
on programsOf(windowNumber, tabNumber)
	try
		with timeout of 5 seconds
			tell application id "com.apple.Terminal" to set programNames to processes of tab tabNumber of window id windowNumber
		end timeout
	on error errorText number errorNumber
		my passOn(errorText, errorNumber)
		return missing value
	end try
	return programNames
end programsOf

-- Whether something other than a waiting shell has a tab. Terminal does not count shells, so a script that waits for an
-- answer looks idle to it; a shell in a shell therefore counts here. What cannot be found out is busy.
on isBusy(windowNumber, tabNumber)
	try
		with timeout of 5 seconds
			tell application id "com.apple.Terminal" to set busyNow to busy of tab tabNumber of window id windowNumber
		end timeout
	on error errorText number errorNumber
		my passOn(errorText, errorNumber)
		return true
	end try
	if busyNow is not false then return true
	return my shellRunsInShell(my programsOf(windowNumber, tabNumber))
end isBusy

-- Whether a shell follows another in a list of programs. One with a hyphen is a login shell's own helper.
on shellRunsInShell(programNames)
	if programNames is missing value then return false
	set shellNames to {"sh", "bash", "zsh", "ksh", "csh", "tcsh", "dash", "fish"}
	set shellSeen to false
	repeat with place from 1 to count of programNames
		set programName to (item place of programNames) as text
		if shellNames contains programName then
			if shellSeen then return true
			set shellSeen to true
		else if programName starts with "-" then
			set shellSeen to true
		end if
	end repeat
	return false
end shellRunsInShell

-- One row of listSessions.
on rowOf(ttyName, windowNumber, windowPlace, tabNumber)
	set selectedNow to my isSelected(windowNumber, tabNumber)
	set titleText to my titleOf(windowNumber, tabNumber, selectedNow)
	return {ttyName, windowNumber, windowPlace, tabNumber, titleText, my isBusy(windowNumber, tabNumber), selectedNow}
end rowOf

-- The rows with one for each tty. A tab whose shell has ended keeps its tty while the system gives the same one to a
-- new tab; the new one stays.
on withoutEndedTwins(tabRows)
	set keptRows to {}
	repeat with rowNumber from 1 to count of tabRows
		set oneRow to item rowNumber of tabRows
		set outlived to false
		repeat with otherNumber from 1 to count of tabRows
			set otherRow to item otherNumber of tabRows
			if otherNumber is not rowNumber and (item 1 of otherRow) is (item 1 of oneRow) then
				if my outlives(otherRow, oneRow) then set outlived to true
			end if
		end repeat
		if not outlived then set end of keptRows to oneRow
	end repeat
	return keptRows
end withoutEndedTwins

-- Whether the first of two rows with one tty is the tab that still has it: the one with programs, else the newer one.
on outlives(firstRow, secondRow)
	set firstLives to not my hasEnded(item 2 of firstRow, item 4 of firstRow)
	set secondLives to not my hasEnded(item 2 of secondRow, item 4 of secondRow)
	if firstLives is not secondLives then return firstLives
	if (item 2 of firstRow) is not (item 2 of secondRow) then return (item 2 of firstRow) > (item 2 of secondRow)
	return (item 4 of firstRow) > (item 4 of secondRow)
end outlives

-- Whether Terminal says that nothing runs in a tab any more.
on hasEnded(windowNumber, tabNumber)
	return (my programsOf(windowNumber, tabNumber)) is {}
end hasEnded

-- The index of the tab with this tty in this window, one that lives before one that has ended.
on tabOf(ttyName, windowNumber)
	my requireTerminal()
	set endedNumber to 0
	repeat with tabNumber from 1 to my tabCount(windowNumber)
		if my ttyOf(windowNumber, tabNumber) is ttyName then
			if not my hasEnded(windowNumber, tabNumber) then return tabNumber
			set endedNumber to tabNumber
		end if
	end repeat
	if endedNumber is 0 then error "The tab is gone." number -1728
	return endedNumber
end tabOf

-- The same for input: refuses a tab whose shell has ended and, unless allowed, a busy one.
on tabForInput(ttyName, windowNumber, busyAllowed)
	set tabNumber to my tabOf(ttyName, windowNumber)
	if my hasEnded(windowNumber, tabNumber) then error "The tab's shell has ended." number 1011
	if not busyAllowed and my isBusy(windowNumber, tabNumber) then error "The tab is busy." number 1010
	return tabNumber
end tabForInput

-- Asks for a tab to be the front-most thing on the screen. Terminal itself comes last: earlier it would show its old
-- front window and keep that order.
on raiseTab(windowNumber, tabNumber)
	with timeout of 5 seconds
		tell application id "com.apple.Terminal"
			set selected of tab tabNumber of window id windowNumber to true
			if miniaturized of window id windowNumber then set miniaturized of window id windowNumber to false
			set index of window id windowNumber to 1
			set frontmost of window id windowNumber to true
			activate
		end tell
	end timeout
end raiseTab

-- Whether keys would reach this tab: Terminal is the front application, this its front window, that its selected tab.
on isInFront(windowNumber, tabNumber)
	if not (frontmost of application id "com.apple.Terminal") then return false
	with timeout of 5 seconds
		tell application id "com.apple.Terminal" to set windowLeads to frontmost of window id windowNumber
	end timeout
	return windowLeads is true and my isSelected(windowNumber, tabNumber)
end isInFront

-- Brings a tab to the front; whether it came there. The system takes a third of a second, before which Terminal's
-- answers are old, and loses some requests that follow a click: after a second it is asked once more.
on bringToFront(windowNumber, tabNumber)
	repeat 2 times
		my raiseTab(windowNumber, tabNumber)
		delay 0.3
		repeat 14 times
			if my isInFront(windowNumber, tabNumber) then return true
			delay 0.05
		end repeat
	end repeat
	return false
end bringToFront

-- Starts Terminal and waits until it runs. "launch" opens no window; windows of last time may come back.
on startTerminal()
	with timeout of 20 seconds
		tell application id "com.apple.Terminal" to launch
	end timeout
	repeat 100 times
		if my terminalRuns() then exit repeat
		delay 0.1
	end repeat
	my requireTerminal()
end startTerminal

-- The row of a tab that has just been opened, read anew once its shell has started: for two seconds at most it may not
-- run yet, or run what its start-up files need.
on settledRow(newRow)
	set windowNumber to item 2 of newRow
	set tabNumber to item 4 of newRow
	repeat 20 times
		if not (my hasEnded(windowNumber, tabNumber) or my isBusy(windowNumber, tabNumber)) then exit repeat
		delay 0.1
	end repeat
	return my rowOf(item 1 of newRow, windowNumber, item 3 of newRow, tabNumber)
end settledRow

-- Finds the tab that "do script" has just made, and waits for its shell. Its reference tells the tty alone, which it
-- may not have at first and which a tab that has ended may still name.
on rowOfNewTab(newTab, oldNumbers, oldTotals)
	repeat 50 times
		set ttyName to my ttyOfReference(newTab)
		if ttyName is not "" then
			set openRows to my listSessions()
			repeat with rowNumber from 1 to count of openRows
				set openRow to item rowNumber of openRows
				if (count of openRow) is 7 and (item 1 of openRow) is ttyName then
					if my hasNewTab(item 2 of openRow, oldNumbers, oldTotals) then return my settledRow(openRow)
				end if
			end repeat
		end if
		delay 0.1
	end repeat
	error "The new window has no tab." number -1728
end rowOfNewTab

-- Whether a window is new or has more tabs than before (tabs in one window).
on hasNewTab(windowNumber, oldNumbers, oldTotals)
	repeat with place from 1 to count of oldNumbers
		if (item place of oldNumbers) is windowNumber then
			return (my tabCount(windowNumber)) > (item place of oldTotals)
		end if
	end repeat
	return true
end hasNewTab

-- The tty of a tab reference; empty while it has none.
on ttyOfReference(newTab)
	try
		with timeout of 5 seconds
			tell application id "com.apple.Terminal" to set ttyName to tty of newTab
		end timeout
	on error errorText number errorNumber
		my passOn(errorText, errorNumber)
		return ""
	end try
	return my textOrEmpty(ttyName)
end ttyOfReference

-- The text up to its last line that is not empty.
on withoutEmptyEnd(fullText)
	set lineTotal to count of paragraphs of fullText
	repeat while lineTotal > 0 and (paragraph lineTotal of fullText) is ""
		set lineTotal to lineTotal - 1
	end repeat
	if lineTotal is 0 then return ""
	return text from paragraph 1 to paragraph lineTotal of fullText
end withoutEmptyEnd
