-- What the tests take for granted about Terminal, as questions that a Mac can answer. Each handler with the arguments
-- (ttyName, windowNumber) is a scenario: it gets a window that was opened for it alone and is closed after it, and
-- answers in a list. answers.txt has the answers of the tests' desktop; packaging/macos/record.sh plays the scenarios
-- on a Mac and compares. TerminalBridge.applescript stands before this file when it is run.

-- A new window: its place among Terminal's windows, its only tab, idle and selected.
on newWindow(ttyName, windowNumber)
	set ownRow to my rowOfWindow(windowNumber)
	return {count of ownRow, item 1 of ownRow is ttyName, item 3 of ownRow, item 4 of ownRow, item 6 of ownRow, item 7 of ownRow}
end newWindow

-- What Terminal itself says of it: tabs, whether it is to be seen, whether it is in the Dock, whether it has a name.
on newWindowRaw(ttyName, windowNumber)
	tell application id "com.apple.Terminal"
		set tabTotal to count of tabs of window id windowNumber
		set shownNow to visible of window id windowNumber
		set inDock to miniaturized of window id windowNumber
		set nameText to name of window id windowNumber
	end tell
	return {tabTotal, shownNow, inDock, nameText is not ""}
end newWindowRaw

-- The programs of a waiting shell: "login", then one whose name begins with a hyphen.
on waitingPrograms(ttyName, windowNumber)
	delay 2
	set programNames to my programsOf(windowNumber, 1)
	return {item 1 of programNames, item 2 of programNames starts with "-"}
end waitingPrograms

-- Terminal's state counts the window.
on countedWindow(ttyName, windowNumber)
	set bridgeState to my bridgeStatus()
	return {item 1 of bridgeState, item 2 of bridgeState > 0}
end countedWindow

-- A second window is another one, with another tty, and lies before the first.
on secondWindow(ttyName, windowNumber)
	set otherRow to my createWindow()
	set otherNumber to item 2 of otherRow
	set ownRow to my rowOfWindow(windowNumber)
	my closeWindow(otherNumber)
	return {otherNumber is not windowNumber, item 1 of otherRow is not ttyName, item 3 of ownRow > item 3 of otherRow}
end secondWindow

-- A command arrives with Return; its output is a line of the screen and of the history.
on typedCommand(ttyName, windowNumber)
	my sendCommand("echo velmora", ttyName, windowNumber, false)
	delay 1
	return {my shows("visible", "velmora", ttyName, windowNumber), my shows("history", "velmora", ttyName, windowNumber)}
end typedCommand

-- Two lines are two commands.
on typedLines(ttyName, windowNumber)
	my sendCommand("echo one\necho two", ttyName, windowNumber, false)
	delay 1
	return {my shows("visible", "one", ttyName, windowNumber), my shows("visible", "two", ttyName, windowNumber)}
end typedLines

-- What has scrolled away is in the history alone.
on longOutput(ttyName, windowNumber)
	my sendCommand("seq 300", ttyName, windowNumber, false)
	delay 1
	set onScreen to {my shows("visible", "7", ttyName, windowNumber), my shows("visible", "300", ttyName, windowNumber)}
	set inHistory to {my shows("history", "7", ttyName, windowNumber), my shows("history", "300", ttyName, windowNumber)}
	return {onScreen, inHistory}
end longOutput

-- A text is cut at its front and counted whole.
on cutOutput(ttyName, windowNumber)
	my sendCommand("seq 300", ttyName, windowNumber, false)
	delay 1
	set outputPair to my readOutput("history", 10, ttyName, windowNumber)
	return {length of item 1 of outputPair, item 2 of outputPair > 1000}
end cutOutput

-- A program makes the tab busy, and input is refused until it ends.
on runningProgram(ttyName, windowNumber)
	my sendCommand("sleep 4", ttyName, windowNumber, false)
	delay 1
	set refusedWith to my errorOfCommand("echo no", ttyName, windowNumber)
	set busyNow to item 6 of my rowOfWindow(windowNumber)
	delay 5
	return {busyNow, refusedWith, item 6 of my rowOfWindow(windowNumber)}
end runningProgram

-- Terminal does not call a shell in a shell busy; the bridge does.
on shellInShell(ttyName, windowNumber)
	my sendCommand("sh", ttyName, windowNumber, false)
	delay 1
	tell application id "com.apple.Terminal" to set busyNow to busy of tab 1 of window id windowNumber
	set busyInRow to item 6 of my rowOfWindow(windowNumber)
	my sendCommand("exit", ttyName, windowNumber, true)
	delay 1
	return {busyNow, busyInRow, item 6 of my rowOfWindow(windowNumber)}
end shellInShell

-- A shell that has ended leaves no programs, and its tab with its tty. (A profile that closes the window then differs.)
on endedShell(ttyName, windowNumber)
	my sendCommand("exit", ttyName, windowNumber, false)
	delay 2
	set ownRow to my rowOfWindow(windowNumber)
	return {my programsOf(windowNumber, 1), item 1 of ownRow is ttyName, my errorOfCommand("echo no", ttyName, windowNumber)}
end endedShell

-- The corners of the window, left and top first.
on pictureCorners(ttyName, windowNumber)
	set edgeList to my captureBounds(ttyName, windowNumber)
	return {count of edgeList, item 3 of edgeList > item 1 of edgeList, item 4 of edgeList > item 2 of edgeList}
end pictureCorners

-- A window in the Dock has no picture and stays listed; what Terminal then calls visible.
on windowInDock(ttyName, windowNumber)
	tell application id "com.apple.Terminal" to set miniaturized of window id windowNumber to true
	delay 2
	set refusedWith to my errorOfPicture(ttyName, windowNumber)
	set listedNow to (count of my rowOfWindow(windowNumber)) is 7
	my focusSession(ttyName, windowNumber)
	delay 1
	return {refusedWith, listedNow, my errorOfPicture(ttyName, windowNumber)}
end windowInDock

-- A window behind another comes to the front, and Terminal with it.
on broughtToFront(ttyName, windowNumber)
	set otherNumber to item 2 of my createWindow()
	my focusSession(ttyName, windowNumber)
	delay 1
	set leadsNow to my isInFront(windowNumber, 1)
	set placeNow to item 3 of my rowOfWindow(windowNumber)
	my closeWindow(otherNumber)
	return {leadsNow, placeNow}
end broughtToFront

-- A closed window: the bridge's answer, the tabs that it keeps, whether it is visible, whether it is listed.
on closedWindow(ttyName, windowNumber)
	set closedNow to my closeWindow(windowNumber)
	delay 1
	return {closedNow, my tabCount(windowNumber), my isShown(windowNumber), count of my rowOfWindow(windowNumber)}
end closedWindow

-- The numbers of errors: no such window, no such tab, another window's tty, an unknown window to close.
on errorNumbers(ttyName, windowNumber)
	set noWindow to my errorOfCount(999999999)
	set noTab to my errorOfTab(windowNumber, 9)
	set noTty to my errorOfCommand("echo no", "/dev/ttys999", windowNumber)
	return {noWindow, noTab, noTty, my errorOfClosing(999999999)}
end errorNumbers

-- Keys reach the tab: the last command once more, by the arrow and Return. Needs the accessibility permission.
on pressedKeys(ttyName, windowNumber)
	my sendCommand("echo again", ttyName, windowNumber, false)
	delay 1
	my sendKey(126, 0, ttyName, windowNumber, false)
	my sendKey(126, 1, ttyName, windowNumber, false)
	delay 1
	my sendKey(36, 0, ttyName, windowNumber, false)
	my sendKey(36, 1, ttyName, windowNumber, false)
	delay 1
	return {my timesShown("again", ttyName, windowNumber)}
end pressedKeys

-- Below, what the scenarios share.

-- The row of a window; one without items when it is not listed.
on rowOfWindow(windowNumber)
	set openRows to my listSessions()
	repeat with rowNumber from 1 to count of openRows
		set openRow to item rowNumber of openRows
		if (count of openRow) is 7 and (item 2 of openRow) is windowNumber then return openRow
	end repeat
	return {}
end rowOfWindow

-- How many lines of the screen are just this one.
on timesShown(lineText, ttyName, windowNumber)
	set shownLines to paragraphs of item 1 of my readOutput("visible", 100000, ttyName, windowNumber)
	set timesTotal to 0
	repeat with lineNumber from 1 to count of shownLines
		if (item lineNumber of shownLines) is lineText then set timesTotal to timesTotal + 1
	end repeat
	return timesTotal
end timesShown

-- Whether a line of the screen or of the history is just this one.
on shows(sourceName, lineText, ttyName, windowNumber)
	set shownText to item 1 of my readOutput(sourceName, 100000, ttyName, windowNumber)
	return (paragraphs of shownText) contains lineText
end shows

-- The numbers of the errors that calls end with; 0 without one.
on errorOfCommand(commandText, ttyName, windowNumber)
	try
		my sendCommand(commandText, ttyName, windowNumber, false)
	on error errorText number errorNumber
		return errorNumber
	end try
	return 0
end errorOfCommand

on errorOfPicture(ttyName, windowNumber)
	try
		my captureBounds(ttyName, windowNumber)
	on error errorText number errorNumber
		return errorNumber
	end try
	return 0
end errorOfPicture

on errorOfClosing(windowNumber)
	try
		my closeWindow(windowNumber)
	on error errorText number errorNumber
		return errorNumber
	end try
	return 0
end errorOfClosing

on errorOfCount(windowNumber)
	try
		tell application id "com.apple.Terminal" to set tabTotal to count of tabs of window id windowNumber
	on error errorText number errorNumber
		return errorNumber
	end try
	return 0
end errorOfCount

on errorOfTab(windowNumber, tabNumber)
	try
		tell application id "com.apple.Terminal" to set ttyName to tty of tab tabNumber of window id windowNumber
	on error errorText number errorNumber
		return errorNumber
	end try
	return 0
end errorOfTab
