<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ko_KR" sourcelanguage="en">
<context>
    <name>AppSection</name>
    <message>
        <source>Dashboard</source>
        <translation>대시보드</translation>
    </message>
    <message>
        <source>Sessions</source>
        <translation>세션</translation>
    </message>
    <message>
        <source>History</source>
        <translation>기록</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>설정</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>도움말</translation>
    </message>
</context>
<context>
    <name>Banner</name>
    <message>
        <source>Dismiss</source>
        <translation>닫기</translation>
    </message>
</context>
<context>
    <name>Bridge</name>
    <message>
        <source>Correct the request arguments and try again.</source>
        <translation>요청의 인수를 고친 다음 다시 시도하세요.</translation>
    </message>
    <message>
        <source>MCP change operations are paused.</source>
        <translation>MCP 변경 작업이 일시 중지되어 있습니다.</translation>
    </message>
    <message>
        <source>Resume MCP operations in Velmora, then retry.</source>
        <translation>Velmora에서 MCP 작업을 다시 시작한 다음 다시 시도하세요.</translation>
    </message>
    <message>
        <source>Terminal.app is not running.</source>
        <translation>Terminal.app이 실행 중이 아닙니다.</translation>
    </message>
    <message>
        <source>Open Terminal.app or create a new managed session, then retry.</source>
        <translation>Terminal.app을 열거나 관리형 세션을 새로 만든 다음 다시 시도하세요.</translation>
    </message>
    <message>
        <source>Terminal.app did not respond within five seconds.</source>
        <translation>Terminal.app이 5초 안에 응답하지 않았습니다.</translation>
    </message>
    <message>
        <source>Verify Terminal.app is responsive, then retry.</source>
        <translation>Terminal.app이 응답하는지 확인한 다음 다시 시도하세요.</translation>
    </message>
    <message>
        <source>Terminal automation permission was denied.</source>
        <translation>터미널 자동화 권한이 거부되었습니다.</translation>
    </message>
    <message>
        <source>Allow Terminal automation for Velmora in System Settings, then retry.</source>
        <translation>시스템 설정에서 Velmora의 터미널 자동화를 허용한 다음 다시 시도하세요.</translation>
    </message>
    <message>
        <source>Terminal.app has no selected tab.</source>
        <translation>Terminal.app에 선택된 탭이 없습니다.</translation>
    </message>
    <message>
        <source>Open a Terminal window and retry.</source>
        <translation>터미널 창을 연 다음 다시 시도하세요.</translation>
    </message>
    <message>
        <source>The requested Terminal session was not found.</source>
        <translation>요청한 터미널 세션을 찾을 수 없습니다.</translation>
    </message>
    <message>
        <source>List sessions and select a current sessionId.</source>
        <translation>세션 목록에서 현재 sessionId를 선택하세요.</translation>
    </message>
    <message>
        <source>The Terminal session is no longer the registered tab.</source>
        <translation>이 터미널 세션은 더 이상 등록된 탭이 아닙니다.</translation>
    </message>
    <message>
        <source>List sessions and use the newly issued sessionId.</source>
        <translation>세션 목록을 다시 가져와 새로 발급된 sessionId를 사용하세요.</translation>
    </message>
    <message>
        <source>Terminal returned an ambiguous or empty TTY identity.</source>
        <translation>터미널이 모호하거나 비어 있는 TTY 식별자를 반환했습니다.</translation>
    </message>
    <message>
        <source>Refresh the session list after Terminal.app settles.</source>
        <translation>Terminal.app이 안정된 다음 세션 목록을 새로 고치세요.</translation>
    </message>
    <message>
        <source>This Terminal session is not allowed for the requested operation.</source>
        <translation>이 터미널 세션에는 요청한 작업이 허용되어 있지 않습니다.</translation>
    </message>
    <message>
        <source>Allow the session in Velmora or choose a managed session.</source>
        <translation>Velmora에서 이 세션을 허용하거나 관리형 세션을 선택하세요.</translation>
    </message>
    <message>
        <source>Tool arguments could not be decoded using the advertised schema.</source>
        <translation>도구의 인수를 공개된 스키마로 해석할 수 없습니다.</translation>
    </message>
    <message>
        <source>Terminal.app could not complete the requested automation operation.</source>
        <translation>Terminal.app이 요청한 자동화 작업을 완료하지 못했습니다.</translation>
    </message>
    <message>
        <source>Check Terminal.app and automation permission, then retry.</source>
        <translation>Terminal.app과 자동화 권한을 확인한 다음 다시 시도하세요.</translation>
    </message>
    <message>
        <source>Terminal output is unavailable.</source>
        <translation>터미널 출력을 가져올 수 없습니다.</translation>
    </message>
    <message>
        <source>Check the Terminal tab and retry with visible output.</source>
        <translation>터미널 탭을 확인하고 보이는 출력으로 다시 시도하세요.</translation>
    </message>
    <message>
        <source>The output exceeded the requested character limit.</source>
        <translation>출력이 요청한 글자 수 제한을 넘었습니다.</translation>
    </message>
    <message>
        <source>Request a larger maximum up to 50000 characters if more context is needed.</source>
        <translation>내용이 더 필요하면 최대 50000자까지 더 큰 값을 요청하세요.</translation>
    </message>
    <message>
        <source>Terminal screen capture is unavailable.</source>
        <translation>터미널 화면을 캡처할 수 없습니다.</translation>
    </message>
    <message>
        <source>Allow Screen Recording for Velmora in System Settings, keep the Terminal window visible, then retry.</source>
        <translation>시스템 설정에서 Velmora의 화면 기록을 허용하고 터미널 창이 보이게 둔 다음 다시 시도하세요.</translation>
    </message>
    <message>
        <source>The Terminal session is busy.</source>
        <translation>터미널 세션이 사용 중입니다.</translation>
    </message>
    <message>
        <source>Enable busy session input in Velmora settings only when you intend to send input to the foreground process, or wait for the current process to finish and retry.</source>
        <translation>실행 중인 프로그램에 입력을 보내려는 경우에만 Velmora 설정에서 사용 중인 세션으로의 입력을 켜거나, 현재 프로그램이 끝나기를 기다린 다음 다시 시도하세요.</translation>
    </message>
    <message>
        <source>Enable busy session input in Velmora settings only when you intend to send keys to the foreground process, or wait for the current process to finish and retry.</source>
        <translation>실행 중인 프로그램에 키를 보내려는 경우에만 Velmora 설정에서 사용 중인 세션으로의 입력을 켜거나, 현재 프로그램이 끝나기를 기다린 다음 다시 시도하세요.</translation>
    </message>
    <message>
        <source>Put it into claude_desktop_config.json (Settings, Developer, Edit Config) and restart Claude Desktop.</source>
        <translation>claude_desktop_config.json(Settings, Developer, Edit Config)에 넣고 Claude Desktop을 다시 시작하세요.</translation>
    </message>
    <message>
        <source>Run it once in a shell: it connects all your projects. For one project only, put what `velmora config cursor` prints into the project&apos;s .mcp.json.</source>
        <translation>셸에서 한 번 실행하면 모든 프로젝트에 연결됩니다. 한 프로젝트에만 연결하려면 `velmora config cursor`의 출력을 그 프로젝트의 .mcp.json에 넣으세요.</translation>
    </message>
    <message>
        <source>Put it into ~/.cursor/mcp.json, or into .cursor/mcp.json of one project.</source>
        <translation>~/.cursor/mcp.json에 넣거나, 한 프로젝트의 .cursor/mcp.json에 넣으세요.</translation>
    </message>
    <message>
        <source>Put it into your mcp.json (command palette: MCP: Open User Configuration), or into .vscode/mcp.json of one project.</source>
        <translation>사용자 mcp.json(명령 팔레트: MCP: Open User Configuration)에 넣거나, 한 프로젝트의 .vscode/mcp.json에 넣으세요.</translation>
    </message>
    <message>
        <source>Add it at the end of ~/.codex/config.toml.</source>
        <translation>~/.codex/config.toml의 끝에 추가하세요.</translation>
    </message>
    <message>
        <source>Put it into ~/.gemini/settings.json, or into .gemini/settings.json of one project.</source>
        <translation>~/.gemini/settings.json에 넣거나, 한 프로젝트의 .gemini/settings.json에 넣으세요.</translation>
    </message>
    <message>
        <source>Put it into settings.json (command palette: zed: open settings file).</source>
        <translation>settings.json(명령 팔레트: zed: open settings file)에 넣으세요.</translation>
    </message>
    <message>
        <source>Put it into ~/.config/opencode/opencode.json, or into opencode.json of one project.</source>
        <translation>~/.config/opencode/opencode.json에 넣거나, 한 프로젝트의 opencode.json에 넣으세요.</translation>
    </message>
    <message>
        <source>Put it into ~/.openclaw/openclaw.json.</source>
        <translation>~/.openclaw/openclaw.json에 넣으세요.</translation>
    </message>
    <message>
        <source>Stored history could not be read.</source>
        <translation>저장된 기록을 읽을 수 없습니다.</translation>
    </message>
    <message>
        <source>The history schema is not supported.</source>
        <translation>지원하지 않는 기록 형식입니다.</translation>
    </message>
    <message>
        <source>History could not be saved locally.</source>
        <translation>기록을 이 컴퓨터에 저장할 수 없습니다.</translation>
    </message>
    <message>
        <source>History file permissions could not be applied.</source>
        <translation>기록 파일의 접근 권한을 설정할 수 없습니다.</translation>
    </message>
    <message>
        <source>History could not be deleted.</source>
        <translation>기록을 삭제할 수 없습니다.</translation>
    </message>
    <message>
        <source>The settings schema is not supported.</source>
        <translation>지원하지 않는 설정 형식입니다.</translation>
    </message>
    <message>
        <source>Settings file permissions could not be applied.</source>
        <translation>설정 파일의 접근 권한을 설정할 수 없습니다.</translation>
    </message>
    <message>
        <source>Application Support permissions could not be applied.</source>
        <translation>Application Support 폴더의 접근 권한을 설정할 수 없습니다.</translation>
    </message>
    <message>
        <source>The change holds, but could not be kept for the next start.</source>
        <translation>변경은 적용되었지만 다음에 시작할 때까지 보관할 수 없습니다.</translation>
    </message>
    <message>
        <source>Check local disk permissions and available space, then retry.</source>
        <translation>디스크의 접근 권한과 남은 공간을 확인한 뒤 다시 시도하십시오.</translation>
    </message>
    <message>
        <source>Run it in a terminal outside tmux and outside the tabs that Velmora lists, such as another SSH login or terminal window, or use Velmora&apos;s window.</source>
        <translation>다른 SSH 로그인이나 터미널 창처럼 tmux 밖에 있고 Velmora의 목록에 없는 터미널에서 실행하거나 Velmora 창을 사용하십시오.</translation>
    </message>
    <message>
        <source>Write more of the session&apos;s id.</source>
        <translation>세션 ID를 더 길게 입력하십시오.</translation>
    </message>
    <message>
        <source>`velmora sessions` lists them.</source>
        <translation>`velmora sessions`로 목록을 볼 수 있습니다.</translation>
    </message>
    <message>
        <source>Something went wrong that has no name.</source>
        <translation>알 수 없는 문제가 발생했습니다.</translation>
    </message>
    <message>
        <source>The client left before its call was begun; nothing was done.</source>
        <translation>호출을 시작하기 전에 클라이언트가 연결을 끊어 아무 작업도 하지 않았습니다.</translation>
    </message>
    <message>
        <source>Call again.</source>
        <translation>다시 호출하십시오.</translation>
    </message>
    <message>
        <source>Special key input is not supported by this automation adapter.</source>
        <translation>이 자동화 어댑터는 특수 키 입력을 지원하지 않습니다.</translation>
    </message>
    <message>
        <source>Leave out submit, and use the keys of the plain form.</source>
        <translation>submit을 빼고 기본 형식의 키를 사용하십시오.</translation>
    </message>
    <message>
        <source>Leave out name, directory, columns and rows.</source>
        <translation>name, directory, columns, rows를 빼십시오.</translation>
    </message>
    <message>
        <source>Leave out format.</source>
        <translation>format을 빼십시오.</translation>
    </message>
    <message>
        <source>List the sessions before you create another one.</source>
        <translation>세션을 새로 만들기 전에 먼저 목록을 확인하십시오.</translation>
    </message>
    <message>
        <source>Read the session&apos;s output to see what happened before you send again.</source>
        <translation>다시 보내기 전에 세션의 출력을 읽어 어떻게 되었는지 확인하십시오.</translation>
    </message>
    <message>
        <source>Check the owner and the permissions of the tmux socket and its folder.</source>
        <translation>tmux 소켓과 그 폴더의 소유자와 접근 권한을 확인하십시오.</translation>
    </message>
    <message>
        <source>The tmux server does not admit this user.</source>
        <translation>tmux 서버가 이 사용자의 접속을 허용하지 않습니다.</translation>
    </message>
    <message>
        <source>Allow the user with tmux server-access -a, then retry.</source>
        <translation>tmux server-access -a로 사용자를 허용한 뒤 다시 시도하십시오.</translation>
    </message>
    <message>
        <source>The tmux server admits this user for reading only.</source>
        <translation>tmux 서버가 이 사용자에게 읽기만 허용합니다.</translation>
    </message>
    <message>
        <source>Allow writing with tmux server-access -w, then retry.</source>
        <translation>tmux server-access -w로 쓰기를 허용한 뒤 다시 시도하십시오.</translation>
    </message>
    <message>
        <source>The tmux server ended during the call.</source>
        <translation>호출하는 동안 tmux 서버가 종료되었습니다.</translation>
    </message>
    <message>
        <source>Check the tmux server, then retry.</source>
        <translation>tmux 서버를 확인한 뒤 다시 시도하십시오.</translation>
    </message>
    <message>
        <source>tmux did not answer in time.</source>
        <translation>tmux가 제때 응답하지 않았습니다.</translation>
    </message>
    <message>
        <source>Check that the tmux server responds, then retry.</source>
        <translation>tmux 서버가 응답하는지 확인한 뒤 다시 시도하십시오.</translation>
    </message>
    <message>
        <source>Velmora is shutting down.</source>
        <translation>Velmora를 종료하는 중입니다.</translation>
    </message>
    <message>
        <source>Start Velmora again, then retry.</source>
        <translation>Velmora를 다시 시작한 뒤 다시 시도하십시오.</translation>
    </message>
    <message>
        <source>The terminal&apos;s history is too large to be read.</source>
        <translation>터미널의 스크롤백이 너무 커서 읽을 수 없습니다.</translation>
    </message>
    <message>
        <source>Retry with visible output, or clear the history with tmux clear-history.</source>
        <translation>보이는 출력만으로 다시 시도하거나 tmux clear-history로 스크롤백을 지우십시오.</translation>
    </message>
    <message>
        <source>Make the folder and the socket your own and private (chmod 700), then retry.</source>
        <translation>폴더와 소켓을 본인 소유의 비공개(chmod 700)로 바꾼 뒤 다시 시도하십시오.</translation>
    </message>
    <message>
        <source>No tmux server is running.</source>
        <translation>실행 중인 tmux 서버가 없습니다.</translation>
    </message>
    <message>
        <source>Create a session with terminal_create_session or start tmux, then retry.</source>
        <translation>terminal_create_session으로 세션을 만들거나 tmux를 시작한 뒤 다시 시도하십시오.</translation>
    </message>
    <message>
        <source>Install a newer tmux and restart its server.</source>
        <translation>더 새로운 tmux를 설치하고 서버를 다시 시작하십시오.</translation>
    </message>
    <message>
        <source>End the tmux sessions and restart the tmux server, then retry.</source>
        <translation>tmux 세션을 모두 끝내고 tmux 서버를 다시 시작한 뒤 다시 시도하십시오.</translation>
    </message>
    <message>
        <source>The tmux pane of this session is gone or has moved.</source>
        <translation>이 세션의 tmux 창이 없어졌거나 다른 곳으로 옮겨졌습니다.</translation>
    </message>
    <message>
        <source>The program in this tmux pane has ended.</source>
        <translation>이 tmux 창의 프로그램이 종료되었습니다.</translation>
    </message>
    <message>
        <source>List sessions and choose another one, or create a new one.</source>
        <translation>세션 목록에서 다른 세션을 고르거나 새로 만드십시오.</translation>
    </message>
    <message>
        <source>Input to this tmux pane is switched off.</source>
        <translation>이 tmux 창의 입력이 꺼져 있습니다.</translation>
    </message>
    <message>
        <source>Allow input with tmux select-pane -e, or choose another session.</source>
        <translation>tmux select-pane -e로 입력을 허용하거나 다른 세션을 고르십시오.</translation>
    </message>
    <message>
        <source>Someone is typing in this session.</source>
        <translation>누군가 이 세션에 입력하고 있습니다.</translation>
    </message>
    <message>
        <source>Wait until the user has submitted or erased the line, then retry.</source>
        <translation>사용자가 그 줄을 실행하거나 지울 때까지 기다린 뒤 다시 시도하십시오.</translation>
    </message>
    <message>
        <source>A program is asking for a secret in the tmux pane.</source>
        <translation>tmux 창에서 프로그램이 비밀번호 같은 비밀 값을 묻고 있습니다.</translation>
    </message>
    <message>
        <source>Focus the session and let the user type it, then retry.</source>
        <translation>세션을 앞으로 가져와 사용자가 직접 입력하게 한 뒤 다시 시도하십시오.</translation>
    </message>
    <message>
        <source>Send it in shorter lines, or write it to a file and run that.</source>
        <translation>더 짧은 줄로 나누어 보내거나 파일에 적어 실행하십시오.</translation>
    </message>
    <message>
        <source>Command must not contain a NUL character.</source>
        <translation>명령에는 NUL 문자를 쓸 수 없습니다.</translation>
    </message>
    <message>
        <source>repeatCount must be between 1 and 50.</source>
        <translation>repeatCount는 1에서 50 사이여야 합니다.</translation>
    </message>
    <message>
        <source>tmux ended the new session at once because its option destroy-unattached is on.</source>
        <translation>tmux의 destroy-unattached 옵션이 켜져 있어 새 세션이 곧바로 종료되었습니다.</translation>
    </message>
    <message>
        <source>The new tmux session ended at once.</source>
        <translation>새 tmux 세션이 곧바로 종료되었습니다.</translation>
    </message>
    <message>
        <source>Switch the option off (tmux set -g destroy-unattached off), then retry.</source>
        <translation>옵션을 끈 뒤(tmux set -g destroy-unattached off) 다시 시도하십시오.</translation>
    </message>
    <message>
        <source>Check that the default shell of tmux starts, then retry.</source>
        <translation>tmux의 기본 셸이 시작되는지 확인한 뒤 다시 시도하십시오.</translation>
    </message>
    <message>
        <source>tmux gave an answer that cannot be understood.</source>
        <translation>tmux의 응답을 이해할 수 없습니다.</translation>
    </message>
    <message>
        <source>The session is selected in tmux, but the desktop&apos;s terminal did not show it.</source>
        <translation>tmux에서 세션을 선택했지만 데스크톱의 터미널이 보여 주지 않았습니다.</translation>
    </message>
    <message>
        <source>Attach to it in a terminal with tmux attach-session.</source>
        <translation>터미널에서 tmux attach-session으로 연결하십시오.</translation>
    </message>
    <message>
        <source>Check the temporary folder&apos;s permissions and free space, then retry.</source>
        <translation>임시 폴더의 접근 권한과 남은 공간을 확인한 뒤 다시 시도하십시오.</translation>
    </message>
    <message>
        <source>Choose another name, or leave it out.</source>
        <translation>다른 이름을 고르거나 이름을 빼십시오.</translation>
    </message>
    <message>
        <source>Name a directory that exists.</source>
        <translation>있는 디렉터리를 지정하십시오.</translation>
    </message>
    <message>
        <source>It is unknown whether the session was created.</source>
        <translation>세션이 만들어졌는지 알 수 없습니다.</translation>
    </message>
    <message>
        <source>The outcome is unknown: the input may have been typed.</source>
        <translation>결과를 알 수 없습니다. 입력이 전달되었을 수 있습니다.</translation>
    </message>
    <message>
        <source>Velmora cannot tell which process it is.</source>
        <translation>어느 프로세스인지 알 수 없습니다.</translation>
    </message>
    <message>
        <source>Meanwhile another process serves there.</source>
        <translation>그 사이에 다른 프로세스가 그 자리에서 서비스하고 있습니다.</translation>
    </message>
    <message>
        <source>the path is too long, or what stands there is not this user&apos;s.</source>
        <translation>경로가 너무 길거나, 그 자리에 있는 것이 이 사용자의 것이 아닙니다.</translation>
    </message>
    <message>
        <source>a process of another user was at the other end.</source>
        <translation>상대 프로세스가 다른 사용자의 것입니다.</translation>
    </message>
    <message>
        <source>the other end has closed.</source>
        <translation>상대 쪽에서 연결을 닫았습니다.</translation>
    </message>
    <message>
        <source>Velmora is already running there.</source>
        <translation>그 자리에서 이미 Velmora가 실행 중입니다.</translation>
    </message>
    <message>
        <source>Install bubblewrap and allow it user namespaces, or switch containNewWindows off in the settings.</source>
        <translation>bubblewrap을 설치하고 사용자 네임스페이스를 허용하거나, 설정에서 containNewWindows를 끄세요.</translation>
    </message>
</context>
<context>
    <name>ClearHistoryDialog</name>
    <message>
        <source>Delete Velmora history?</source>
        <translation>Velmora 기록을 삭제할까요?</translation>
    </message>
    <message>
        <source>This does not change Terminal scrollback or shell history.</source>
        <translation>터미널 스크롤백과 셸 기록은 바뀌지 않습니다.</translation>
    </message>
    <message>
        <source>Delete History</source>
        <translation>기록 삭제</translation>
    </message>
</context>
<context>
    <name>ClientsCard</name>
    <message>
        <source>No clients connected</source>
        <translation>연결된 클라이언트가 없습니다</translation>
    </message>
</context>
<context>
    <name>ConnectionTestView</name>
    <message>
        <source>Testing…</source>
        <translation>테스트 중…</translation>
    </message>
    <message>
        <source>Test the connection</source>
        <translation>연결 테스트</translation>
    </message>
    <message>
        <source>Answer</source>
        <translation>응답</translation>
    </message>
</context>
<context>
    <name>DashboardView</name>
    <message>
        <source>Dashboard</source>
        <translation>대시보드</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>새로 고침</translation>
    </message>
    <message>
        <source>Restart the bridge</source>
        <translation>브리지 다시 시작</translation>
    </message>
    <message>
        <source>Connected clients</source>
        <translation>연결된 클라이언트</translation>
    </message>
    <message>
        <source>Recent requests</source>
        <translation>최근 요청</translation>
    </message>
    <message>
        <source>No requests yet</source>
        <translation>아직 요청이 없습니다</translation>
    </message>
</context>
<context>
    <name>DesktopMac</name>
    <message>
        <source>Updates are downloaded from the maker&apos;s update source and installed only after you approve them.</source>
        <translation>업데이트는 제작사의 업데이트 서버에서 내려받으며, 승인한 다음에만 설치됩니다.</translation>
    </message>
    <message>
        <source>This build of Velmora has no updater.</source>
        <translation>이 Velmora 빌드에는 업데이트 기능이 없습니다.</translation>
    </message>
    <message>
        <source>About Velmora</source>
        <translation>Velmora에 관하여</translation>
    </message>
</context>
<context>
    <name>Dialog</name>
    <message>
        <source>Cancel</source>
        <translation>취소</translation>
    </message>
</context>
<context>
    <name>GeneralSettingsView</name>
    <message>
        <source>General</source>
        <translation>일반</translation>
    </message>
    <message>
        <source>Startup</source>
        <translation>시작</translation>
    </message>
    <message>
        <source>Launch at login</source>
        <translation>로그인할 때 실행</translation>
    </message>
    <message>
        <source>This desktop has no place for it at the moment.</source>
        <translation>지금 이 데스크톱에는 표시할 자리가 없습니다.</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>언어</translation>
    </message>
    <message>
        <source>Updates</source>
        <translation>업데이트</translation>
    </message>
    <message>
        <source>Check for updates automatically</source>
        <translation>자동으로 업데이트 확인</translation>
    </message>
    <message>
        <source>Check for Updates…</source>
        <translation>업데이트 확인…</translation>
    </message>
    <message>
        <source>Permissions</source>
        <translation>권한</translation>
    </message>
    <message>
        <source>Windows that agents open</source>
        <translation>에이전트가 여는 창</translation>
    </message>
    <message>
        <source>Busy windows that an agent opened accept input</source>
        <translation>에이전트가 연 창은 사용 중이어도 입력 받기</translation>
    </message>
    <message>
        <source>Agents can answer and interrupt what they started. A window that you have looked at counts as yours.</source>
        <translation>에이전트가 직접 시작한 작업에 답하고 중단할 수 있습니다. 사용자가 열어 본 창은 사용자의 창으로 봅니다.</translation>
    </message>
    <message>
        <source>Has no effect with Terminal.app, which does not tell whether you have typed in a window.</source>
        <translation>Terminal.app에서는 효과가 없습니다. 사용자가 창에 입력했는지 알려 주지 않기 때문입니다.</translation>
    </message>
    <message>
        <source>Shell integration</source>
        <translation>셸 통합</translation>
    </message>
    <message>
        <source>bash, zsh and fish in new windows of agents tell how each command ended. None of your files is changed.</source>
        <translation>에이전트가 여는 새 창의 bash, zsh, fish가 각 명령의 종료 결과를 알려 줍니다. 사용자의 파일은 바뀌지 않습니다.</translation>
    </message>
    <message>
        <source>tmux server</source>
        <translation>tmux 서버</translation>
    </message>
    <message>
        <source>The usual server</source>
        <translation>기본 서버</translation>
    </message>
    <message>
        <source>Path of the tmux server&apos;s socket</source>
        <translation>tmux 서버의 소켓 경로</translation>
    </message>
    <message>
        <source>The path of its socket, for a server that you start with tmux -L or -S: /tmp/tmux-1000/work, for example. Takes effect when Velmora starts next.</source>
        <translation>tmux -L 또는 -S로 시작하는 서버의 소켓 경로입니다. 예: /tmp/tmux-1000/work. Velmora를 다음에 시작할 때부터 적용됩니다.</translation>
    </message>
</context>
<context>
    <name>Help</name>
    <message>
        <source>Language</source>
        <translation>언어</translation>
    </message>
    <message>
        <source>Install Location</source>
        <translation>설치 위치</translation>
    </message>
    <message>
        <source>These instructions assume Velmora.app is installed in /Applications.</source>
        <translation>이 안내는 Velmora.app이 /Applications에 설치되어 있다고 가정합니다.</translation>
    </message>
    <message>
        <source>Copy install path</source>
        <translation>설치 경로 복사</translation>
    </message>
    <message>
        <source>1. Allow macOS Permissions</source>
        <translation>1. macOS 권한 허용</translation>
    </message>
    <message>
        <source>Open Velmora. When macOS asks for Automation, Accessibility, or Screen Recording permission, allow it.</source>
        <translation>Velmora를 엽니다. macOS가 자동화, 손쉬운 사용(접근성), 화면 기록 권한을 요청하면 허용합니다.</translation>
    </message>
    <message>
        <source>If you denied a prompt, open System Settings &gt; Privacy &amp; Security. Enable Terminal and System Events under Automation, Velmora under Accessibility, and Velmora under Screen Recording. Then refresh Dashboard.</source>
        <translation>권한 요청을 거부했다면 시스템 설정 &gt; 개인정보 보호 및 보안을 엽니다. 자동화에서 Terminal과 System Events를, 손쉬운 사용(접근성)에서 Velmora를, 화면 기록에서 Velmora를 켭니다. 그런 다음 대시보드(Dashboard)를 새로 고칩니다.</translation>
    </message>
    <message>
        <source>2. Register the stdio Helper</source>
        <translation>2. stdio 헬퍼 등록</translation>
    </message>
    <message>
        <source>Add this JSON to your MCP client&apos;s local stdio server configuration.</source>
        <translation>MCP 클라이언트의 로컬 stdio 서버 설정에 다음 JSON을 추가합니다.</translation>
    </message>
    <message>
        <source>Copy MCP configuration</source>
        <translation>MCP 설정 복사</translation>
    </message>
    <message>
        <source>For OpenClaw, add this shape to ~/.openclaw/openclaw.json.</source>
        <translation>OpenClaw에서는 ~/.openclaw/openclaw.json에 다음 형식으로 추가합니다.</translation>
    </message>
    <message>
        <source>Copy OpenClaw MCP configuration</source>
        <translation>OpenClaw MCP 설정 복사</translation>
    </message>
    <message>
        <source>If OpenClaw CLI is available, these commands save the same server definition and probe the connection.</source>
        <translation>OpenClaw CLI를 사용할 수 있다면 다음 명령으로 같은 서버 정의를 저장하고 연결을 점검합니다.</translation>
    </message>
    <message>
        <source>Copy OpenClaw CLI commands</source>
        <translation>OpenClaw CLI 명령 복사</translation>
    </message>
    <message>
        <source>Copy helper path</source>
        <translation>헬퍼 경로 복사</translation>
    </message>
    <message>
        <source>No URL, port, or token is required. Reconnect your MCP client after updating the configuration.</source>
        <translation>URL, 포트, 토큰은 필요하지 않습니다. 설정 후 MCP 클라이언트를 다시 연결합니다.</translation>
    </message>
    <message>
        <source>3. Check Connection Status</source>
        <translation>3. 연결 상태 확인</translation>
    </message>
    <message>
        <source>First check the bridge and Terminal.app status.</source>
        <translation>먼저 브리지와 Terminal.app의 상태를 확인합니다.</translation>
    </message>
    <message>
        <source>In Dashboard, confirm MCP is Active and Terminal automation is granted.</source>
        <translation>대시보드(Dashboard)에서 MCP가 활성(Active)이고 Terminal 자동화가 granted인지 확인합니다.</translation>
    </message>
    <message>
        <source>4. Create a Managed Terminal Window</source>
        <translation>4. 관리형 Terminal 창 만들기</translation>
    </message>
    <message>
        <source>Create a new managed window where commands can be delivered safely.</source>
        <translation>명령을 안전하게 전달할 수 있는 관리형 창을 새로 만듭니다.</translation>
    </message>
    <message>
        <source>Use data.session.sessionId from the response in later calls. The official Terminal AppleScript dictionary does not provide safe tab creation, so only window is supported.</source>
        <translation>이후 호출에는 응답의 data.session.sessionId를 사용합니다. Terminal의 공식 AppleScript 사전은 안전한 탭 생성을 제공하지 않으므로 window만 지원합니다.</translation>
    </message>
    <message>
        <source>5. Send a Command</source>
        <translation>5. 명령 보내기</translation>
    </message>
    <message>
        <source>Send the sessionId from the create response and the exact command string to run.</source>
        <translation>생성 응답에서 받은 sessionId와 실행할 명령 문자열을 정확하게 보냅니다.</translation>
    </message>
    <message>
        <source>delivered_to_terminal means the command was delivered to Terminal. It does not guarantee completion, success, or an exit code. Busy sessions are rejected.</source>
        <translation>delivered_to_terminal은 명령이 Terminal에 전달되었다는 뜻입니다. 명령의 완료나 성공, 종료 코드를 보장하지는 않습니다. 사용 중인 세션은 거부됩니다.</translation>
    </message>
    <message>
        <source>6. Send Special Keys</source>
        <translation>6. 특수 키 보내기</translation>
    </message>
    <message>
        <source>Send special keys such as up or down arrow by key name.</source>
        <translation>위쪽 또는 아래쪽 화살표와 같은 특수 키를 키 이름으로 보냅니다.</translation>
    </message>
    <message>
        <source>Supported keys are upArrow, downArrow, leftArrow, rightArrow, return, escape, tab, delete, forwardDelete, home, end, pageUp, and pageDown. Special key input brings the target Terminal tab forward and requires macOS Accessibility plus System Events Automation permission.</source>
        <translation>지원하는 키는 upArrow, downArrow, leftArrow, rightArrow, return, escape, tab, delete, forwardDelete, home, end, pageUp, pageDown입니다. 특수 키를 입력하면 대상 Terminal 탭이 맨 앞으로 나오며, macOS 손쉬운 사용(접근성) 권한과 System Events 자동화 권한이 필요합니다.</translation>
    </message>
    <message>
        <source>7. Read Output</source>
        <translation>7. 출력 읽기</translation>
    </message>
    <message>
        <source>Read a bounded suffix of the visible screen or scrollback for the same sessionId.</source>
        <translation>같은 sessionId의 보이는 화면이나 스크롤백에서 끝부분을 제한된 길이만큼 읽습니다.</translation>
    </message>
    <message>
        <source>source can be visible or history, and maxCharacters can be 1 to 50,000. For TUI screens, request a PNG with terminal_capture_screen.</source>
        <translation>source는 visible 또는 history이며, maxCharacters는 1부터 50,000까지 지정할 수 있습니다. TUI 화면은 terminal_capture_screen으로 PNG를 요청합니다.</translation>
    </message>
    <message>
        <source>8. Show a Session in Terminal</source>
        <translation>8. Terminal에서 세션 보기</translation>
    </message>
    <message>
        <source>Call the focus tool only when you explicitly want to show a selected session.</source>
        <translation>선택한 세션을 명시적으로 화면에 표시하려는 경우에만 포커스 도구를 호출합니다.</translation>
    </message>
    <message>
        <source>Status checks, command delivery, and output reads do not automatically bring Terminal to the front.</source>
        <translation>상태 확인, 명령 전달, 출력 읽기는 Terminal을 자동으로 맨 앞으로 가져오지 않습니다.</translation>
    </message>
    <message>
        <source>Existing Sessions</source>
        <translation>기존 세션</translation>
    </message>
    <message>
        <source>Use terminal_list_sessions to inspect sessions. With the default policy, existing sessions are registered as managed; with Selective policy, they are registered as readOnly. Closed or changed sessionIds are not replaced with other tabs.</source>
        <translation>terminal_list_sessions로 세션을 확인합니다. 기본 정책에서는 기존 세션이 managed로, 선택적(Selective) 정책에서는 readOnly로 등록됩니다. 닫히거나 변경된 sessionId는 다른 탭으로 대체되지 않습니다.</translation>
    </message>
    <message>
        <source>Copy %1 call example</source>
        <translation>%1 호출 예시 복사</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>복사</translation>
    </message>
    <message>
        <source>Copied</source>
        <translation>복사됨</translation>
    </message>
    <message>
        <source>These instructions use the location of the Velmora that is running.</source>
        <translation>이 안내는 지금 실행 중인 Velmora의 위치를 사용합니다.</translation>
    </message>
    <message>
        <source>1. Start tmux</source>
        <translation>1. tmux 시작</translation>
    </message>
    <message>
        <source>Velmora needs no system permission. Start tmux in any terminal, or let your MCP client create a window.</source>
        <translation>Velmora에는 시스템 권한이 필요하지 않습니다. 사용하는 터미널에서 tmux를 시작하거나 MCP 클라이언트로 창을 만듭니다.</translation>
    </message>
    <message>
        <source>If Dashboard does not show tmux as available, check that tmux 3.2 or later runs under your own account. Then refresh Dashboard.</source>
        <translation>대시보드(Dashboard)에 tmux가 available로 표시되지 않으면 tmux 3.2 이상이 자신의 계정으로 실행 중인지 확인합니다. 그런 다음 대시보드(Dashboard)를 새로 고칩니다.</translation>
    </message>
    <message>
        <source>First check the bridge and tmux status.</source>
        <translation>먼저 브리지와 tmux의 상태를 확인합니다.</translation>
    </message>
    <message>
        <source>In Dashboard, confirm Bridge is Active and Automation is granted.</source>
        <translation>대시보드(Dashboard)에서 브리지가 활성(Active)이고 자동화가 granted인지 확인합니다.</translation>
    </message>
    <message>
        <source>4. Create a Managed tmux Window</source>
        <translation>4. 관리형 tmux 창 만들기</translation>
    </message>
    <message>
        <source>Use data.session.sessionId from the response in later calls. kind supports only window. It opens as a tmux session of its own, which tmux attach shows.</source>
        <translation>이후 호출에는 응답의 data.session.sessionId를 사용합니다. kind는 window만 지원합니다. 새 창은 별도의 tmux 세션으로 열리며 tmux attach로 볼 수 있습니다.</translation>
    </message>
    <message>
        <source>delivered_to_terminal means the command was delivered to tmux. It does not guarantee completion, success, or an exit code. Busy sessions are rejected.</source>
        <translation>delivered_to_terminal은 명령이 tmux에 전달되었다는 뜻입니다. 명령의 완료나 성공, 종료 코드를 보장하지는 않습니다. 사용 중인 세션은 거부됩니다.</translation>
    </message>
    <message>
        <source>Supported keys are upArrow, downArrow, leftArrow, rightArrow, return, escape, tab, delete, forwardDelete, home, end, pageUp, and pageDown. A key goes to the tmux pane of its session, which need not be in front, and requires no permission.</source>
        <translation>지원하는 키는 upArrow, downArrow, leftArrow, rightArrow, return, escape, tab, delete, forwardDelete, home, end, pageUp, pageDown입니다. 키는 해당 세션의 tmux 패널(pane)로 전달됩니다. 패널이 맨 앞에 있지 않아도 되며 권한도 필요하지 않습니다.</translation>
    </message>
    <message>
        <source>8. Show a Session in tmux</source>
        <translation>8. tmux에서 세션 보기</translation>
    </message>
    <message>
        <source>Status checks, command delivery, and output reads do not switch to another tmux session or pane.</source>
        <translation>상태 확인, 명령 전달, 출력 읽기는 다른 tmux 세션이나 패널(pane)로 전환하지 않습니다.</translation>
    </message>
    <message>
        <source>Use terminal_list_sessions to inspect sessions. With the default policy, existing sessions are registered as managed; with Selective policy, they are registered as readOnly. Closed or changed sessionIds are not replaced with other panes.</source>
        <translation>terminal_list_sessions로 세션을 확인합니다. 기본 정책에서는 기존 세션이 managed로, 선택적(Selective) 정책에서는 readOnly로 등록됩니다. 닫히거나 변경된 sessionId는 다른 패널(pane)로 대체되지 않습니다.</translation>
    </message>
</context>
<context>
    <name>HelpView</name>
    <message>
        <source>Help</source>
        <translation>도움말</translation>
    </message>
</context>
<context>
    <name>HistoryView</name>
    <message>
        <source>Request History</source>
        <translation>요청 기록</translation>
    </message>
    <message>
        <source>Show Velmora&apos;s own</source>
        <translation>Velmora 자체 요청 표시</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>지우기</translation>
    </message>
    <message>
        <source>Search history</source>
        <translation>기록 검색</translation>
    </message>
    <message>
        <source>Tool</source>
        <translation>도구</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>상태</translation>
    </message>
    <message>
        <source>Privacy settings</source>
        <translation>개인정보 설정</translation>
    </message>
    <message>
        <source>No matching requests</source>
        <translation>일치하는 요청이 없습니다</translation>
    </message>
    <message>
        <source>No requests yet</source>
        <translation>아직 요청이 없습니다</translation>
    </message>
    <message>
        <source>Change the search, the tool or the status.</source>
        <translation>검색어, 도구 또는 상태를 바꿔 보세요.</translation>
    </message>
    <message>
        <source>What MCP clients ask of your terminal appears here.</source>
        <translation>MCP 클라이언트가 터미널에 요청한 내용이 여기에 표시됩니다.</translation>
    </message>
</context>
<context>
    <name>MCPConnectionSettingsView</name>
    <message>
        <source>MCP Connection</source>
        <translation>MCP 연결</translation>
    </message>
    <message>
        <source>There is no helper at %1. Install Velmora again.</source>
        <translation>%1에 헬퍼가 없습니다. Velmora를 다시 설치하세요.</translation>
    </message>
    <message>
        <source>Local stdio server</source>
        <translation>로컬 stdio 서버</translation>
    </message>
    <message>
        <source>Configuration</source>
        <translation>설정 내용</translation>
    </message>
    <message>
        <source>Copy configuration</source>
        <translation>설정 복사</translation>
    </message>
    <message>
        <source>OpenClaw</source>
        <translation>OpenClaw</translation>
    </message>
    <message>
        <source>OpenClaw JSON</source>
        <translation>OpenClaw JSON</translation>
    </message>
    <message>
        <source>Copy OpenClaw JSON</source>
        <translation>OpenClaw JSON 복사</translation>
    </message>
    <message>
        <source>OpenClaw CLI can save the same MCP server definition and probe it without editing JSON by hand.</source>
        <translation>OpenClaw CLI를 사용하면 JSON을 직접 편집하지 않고 같은 MCP 서버 정의를 저장하고 점검할 수 있습니다.</translation>
    </message>
    <message>
        <source>OpenClaw CLI</source>
        <translation>OpenClaw CLI</translation>
    </message>
    <message>
        <source>Copy OpenClaw CLI</source>
        <translation>OpenClaw CLI 명령 복사</translation>
    </message>
    <message>
        <source>Each client</source>
        <translation>클라이언트별 설정</translation>
    </message>
    <message>
        <source>Client</source>
        <translation>클라이언트</translation>
    </message>
    <message>
        <source>Configuration for %1</source>
        <translation>%1 설정</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>복사</translation>
    </message>
    <message>
        <source>Copy configuration for %1</source>
        <translation>%1 설정 복사</translation>
    </message>
    <message>
        <source>Helper</source>
        <translation>헬퍼</translation>
    </message>
    <message>
        <source>Helper path</source>
        <translation>헬퍼 경로</translation>
    </message>
    <message>
        <source>Copy helper path</source>
        <translation>헬퍼 경로 복사</translation>
    </message>
    <message>
        <source>Extended form of the tools</source>
        <translation>도구의 확장 형식</translation>
    </message>
    <message>
        <source>The same nine tools with further optional arguments: waiting for a command&apos;s end and its exit code, single keys, new lines only. The texts on this page ask for it when it is on; a client that is connected already keeps the form that it has.</source>
        <translation>같은 아홉 가지 도구에 선택 인수가 더해집니다. 명령이 끝날 때까지 기다려 종료 코드를 받고, 키를 하나씩 보내고, 새 줄만 읽을 수 있습니다. 켜면 이 페이지의 텍스트가 확장 형식을 사용합니다. 이미 연결된 클라이언트는 지금의 형식을 유지합니다.</translation>
    </message>
</context>
<context>
    <name>Main</name>
    <message>
        <source>About Velmora</source>
        <translation>Velmora에 관하여</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>확인</translation>
    </message>
    <message>
        <source>Close Velmora?</source>
        <translation>Velmora를 닫을까요?</translation>
    </message>
    <message>
        <source>Quit Velmora</source>
        <translation>Velmora 종료</translation>
    </message>
</context>
<context>
    <name>NowCard</name>
    <message>
        <source>Now: %1</source>
        <translation>지금: %1</translation>
    </message>
    <message>
        <source>Last: %1</source>
        <translation>마지막: %1</translation>
    </message>
</context>
<context>
    <name>OnboardingConnection</name>
    <message>
        <source>Client</source>
        <translation>클라이언트</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>복사</translation>
    </message>
    <message>
        <source>Copy configuration for %1</source>
        <translation>%1 설정 복사</translation>
    </message>
    <message>
        <source>Configuration for %1</source>
        <translation>%1 설정</translation>
    </message>
</context>
<context>
    <name>OnboardingFooter</name>
    <message>
        <source>Back</source>
        <translation>뒤로</translation>
    </message>
</context>
<context>
    <name>OnboardingPages</name>
    <message>
        <source>Session policy</source>
        <translation>세션 정책</translation>
    </message>
    <message>
        <source>Local MCP connection</source>
        <translation>로컬 MCP 연결</translation>
    </message>
    <message>
        <source>Configure your MCP client to launch the bundled velmora helper over stdio. No network port is opened.</source>
        <translation>함께 설치된 velmora 헬퍼를 stdio로 실행하도록 MCP 클라이언트를 설정하세요. 네트워크 포트는 열리지 않습니다.</translation>
    </message>
    <message>
        <source>Velmora Bridge</source>
        <translation>Velmora 브리지</translation>
    </message>
    <message>
        <source>Commands run in Apple&apos;s Terminal.app. This app does not create a PTY, render a terminal, or inspect shell internals.</source>
        <translation>명령은 Apple의 Terminal.app에서 실행됩니다. 이 앱은 PTY를 만들거나, 터미널을 그리거나, 셸 내부를 들여다보지 않습니다.</translation>
    </message>
    <message>
        <source>Terminal automation</source>
        <translation>터미널 자동화</translation>
    </message>
    <message>
        <source>macOS permission is used only to read official Terminal scripting properties and deliver commands to explicitly identified sessions.</source>
        <translation>macOS 권한은 Terminal의 공식 스크립트 속성을 읽고, 명시적으로 지정된 세션에 명령을 전달하는 데에만 사용됩니다.</translation>
    </message>
    <message>
        <source>Commands run in your own tmux sessions. This app does not create a PTY, replace your terminal, or inspect shell internals.</source>
        <translation>명령은 사용자의 tmux 세션에서 실행됩니다. 이 앱은 PTY를 만들거나, 터미널을 대신하거나, 셸 내부를 들여다보지 않습니다.</translation>
    </message>
    <message>
        <source>tmux automation</source>
        <translation>tmux 자동화</translation>
    </message>
    <message>
        <source>tmux needs no permission. It is used only to read its sessions and deliver commands to explicitly identified ones.</source>
        <translation>tmux에는 권한이 필요하지 않습니다. tmux의 세션을 읽고, 명시적으로 지정된 세션에 명령을 전달하는 데에만 사용됩니다.</translation>
    </message>
</context>
<context>
    <name>OtherBridgeView</name>
    <message>
        <source>Quit</source>
        <translation>종료</translation>
    </message>
</context>
<context>
    <name>PermissionSettings</name>
    <message>
        <source>A tmux server of yours is running, and Velmora may use it.</source>
        <translation>사용자의 tmux 서버가 실행 중이며 Velmora가 사용할 수 있습니다.</translation>
    </message>
    <message>
        <source>tmux is ready to use. Start it in a terminal, or let an MCP client create a session.</source>
        <translation>tmux를 사용할 수 있습니다. 터미널에서 tmux를 시작하거나 MCP 클라이언트로 세션을 만드세요.</translation>
    </message>
    <message>
        <source>tmux cannot be used at the moment. Install tmux 3.2 or newer.</source>
        <translation>지금은 tmux를 사용할 수 없습니다. tmux 3.2 이상을 설치하세요.</translation>
    </message>
    <message>
        <source>No system permission is needed. Velmora uses a tmux server that runs under your name.</source>
        <translation>시스템 권한은 필요하지 않습니다. Velmora는 사용자의 계정으로 실행 중인 tmux 서버를 사용합니다.</translation>
    </message>
    <message>
        <source>Only these macOS Privacy &amp; Security permissions are needed. After opening each panel, enable the item named Velmora unless the note says otherwise.</source>
        <translation>다음 macOS 개인정보 보호 및 보안 권한만 필요합니다. 각 패널을 연 다음, 따로 안내가 없으면 Velmora 항목을 켜세요.</translation>
    </message>
    <message>
        <source>Accessibility</source>
        <translation>손쉬운 사용</translation>
    </message>
    <message>
        <source>Enable Velmora. This lets the app deliver special keys such as arrows, Tab, Return, and Escape.</source>
        <translation>Velmora를 켜세요. 앱이 화살표, Tab, Return, Escape 같은 특수 키를 전달할 수 있게 됩니다.</translation>
    </message>
    <message>
        <source>Open Accessibility Settings</source>
        <translation>손쉬운 사용 설정 열기</translation>
    </message>
    <message>
        <source>Automation</source>
        <translation>자동화</translation>
    </message>
    <message>
        <source>Find Velmora, then enable both Terminal and System Events. This lets the app control Terminal sessions and send special keys.</source>
        <translation>Velmora를 찾아 Terminal과 System Events를 모두 켜세요. 앱이 터미널 세션을 제어하고 특수 키를 보낼 수 있게 됩니다.</translation>
    </message>
    <message>
        <source>Open Automation Settings</source>
        <translation>자동화 설정 열기</translation>
    </message>
    <message>
        <source>Screen Recording</source>
        <translation>화면 기록</translation>
    </message>
    <message>
        <source>Enable Velmora. This is only needed when using terminal_capture_screen to capture a Terminal window.</source>
        <translation>Velmora를 켜세요. terminal_capture_screen으로 터미널 창을 캡처할 때만 필요합니다.</translation>
    </message>
    <message>
        <source>Open Screen Recording Settings</source>
        <translation>화면 기록 설정 열기</translation>
    </message>
</context>
<context>
    <name>PrivacySettingsView</name>
    <message>
        <source>Privacy</source>
        <translation>개인정보</translation>
    </message>
    <message>
        <source>Local history</source>
        <translation>로컬 기록</translation>
    </message>
    <message>
        <source>Persist request metadata</source>
        <translation>요청 메타데이터 보관</translation>
    </message>
    <message>
        <source>Delete history when app exits</source>
        <translation>앱이 종료될 때 기록 삭제</translation>
    </message>
    <message>
        <source>Retention</source>
        <translation>보관 기간</translation>
    </message>
    <message>
        <source>%1 days</source>
        <translation>%1일</translation>
    </message>
    <message>
        <source>Maximum records</source>
        <translation>최대 기록 수</translation>
    </message>
    <message>
        <source>%1 records</source>
        <translation>%1개</translation>
    </message>
    <message>
        <source>Sensitive content</source>
        <translation>민감한 내용</translation>
    </message>
    <message>
        <source>Commands and output may contain passwords, API keys, tokens, and private file contents. Automatic masking is not complete.</source>
        <translation>명령과 출력에는 암호, API 키, 토큰, 개인 파일의 내용이 들어 있을 수 있습니다. 자동 가림은 완전하지 않습니다.</translation>
    </message>
    <message>
        <source>Store command bodies</source>
        <translation>명령 내용 저장</translation>
    </message>
    <message>
        <source>Store output previews</source>
        <translation>출력 미리보기 저장</translation>
    </message>
    <message>
        <source>Preview limit</source>
        <translation>미리보기 제한</translation>
    </message>
    <message>
        <source>%1 characters</source>
        <translation>%1자</translation>
    </message>
    <message>
        <source>Output previews are captured only for terminal_read_output requests; terminal_send_command records delivery, not results. Enabling applies to new requests only, while disabling removes previews already stored.</source>
        <translation>출력 미리보기는 terminal_read_output 요청에서만 저장되며, terminal_send_command는 결과가 아니라 전달만 기록합니다. 켜면 새 요청부터 적용되고, 끄면 이미 저장된 미리보기가 삭제됩니다.</translation>
    </message>
    <message>
        <source>Command delivery</source>
        <translation>명령 전달</translation>
    </message>
    <message>
        <source>Send to busy sessions</source>
        <translation>사용 중인 세션에도 보내기</translation>
    </message>
    <message>
        <source>Input may be delivered to foreground programs such as Claude Code instead of a shell prompt.</source>
        <translation>입력이 셸 프롬프트가 아니라 Claude Code처럼 실행 중인 프로그램에 전달될 수 있습니다.</translation>
    </message>
    <message>
        <source>Session policy</source>
        <translation>세션 정책</translation>
    </message>
    <message>
        <source>For sessions found from now on</source>
        <translation>지금부터 발견되는 세션에 적용됩니다</translation>
    </message>
    <message>
        <source>Maintenance</source>
        <translation>관리</translation>
    </message>
    <message>
        <source>Clear request history</source>
        <translation>요청 기록 지우기</translation>
    </message>
    <message>
        <source>Terminal scrollback and shell history are not changed.</source>
        <translation>터미널 스크롤백과 셸 기록은 바뀌지 않습니다.</translation>
    </message>
    <message>
        <source>Sensitive data warning</source>
        <translation>민감한 데이터 경고</translation>
    </message>
    <message>
        <source>This content stays local but may contain secrets. Continue?</source>
        <translation>이 내용은 이 컴퓨터에만 남지만 비밀 정보가 들어 있을 수 있습니다. 계속할까요?</translation>
    </message>
    <message>
        <source>Enable</source>
        <translation>켜기</translation>
    </message>
</context>
<context>
    <name>Problem</name>
    <message>
        <source>The settings could not be loaded; the defaults hold.</source>
        <translation>설정을 불러올 수 없어 기본값을 사용합니다.</translation>
    </message>
    <message>
        <source>The history could not be loaded.</source>
        <translation>기록을 불러올 수 없습니다.</translation>
    </message>
    <message>
        <source>The sessions&apos; permissions could not be loaded; sessions are read-only at best.</source>
        <translation>세션 권한을 불러올 수 없어 세션이 읽기 전용 이하로 제한됩니다.</translation>
    </message>
    <message>
        <source>The pause could not be kept for the next start.</source>
        <translation>다음 시작을 위해 일시 중지 상태를 저장할 수 없습니다.</translation>
    </message>
    <message>
        <source>The change is saved, but what it no longer allows could not be removed from the history.</source>
        <translation>변경 내용은 저장되었지만, 더 이상 허용되지 않는 내용을 기록에서 삭제할 수 없습니다.</translation>
    </message>
    <message>
        <source>The change could not be saved.</source>
        <translation>변경 내용을 저장할 수 없습니다.</translation>
    </message>
    <message>
        <source>The session policy could not be saved.</source>
        <translation>세션 정책을 저장할 수 없습니다.</translation>
    </message>
    <message>
        <source>MCP clients cannot connect.</source>
        <translation>MCP 클라이언트가 연결할 수 없습니다.</translation>
    </message>
    <message>
        <source>Your choices for this window will be forgotten: %1 could not be written.</source>
        <translation>%1 파일에 쓸 수 없어 이 창의 설정이 저장되지 않습니다.</translation>
    </message>
    <message>
        <source>The path of a socket has to begin with /.</source>
        <translation>소켓 경로는 /로 시작해야 합니다.</translation>
    </message>
</context>
<context>
    <name>RecentRequestsView</name>
    <message>
        <source>Requests</source>
        <translation>요청</translation>
    </message>
</context>
<context>
    <name>RequestRow</name>
    <message>
        <source>Command</source>
        <translation>명령</translation>
    </message>
    <message>
        <source>Output</source>
        <translation>출력</translation>
    </message>
    <message>
        <source>Show less</source>
        <translation>접기</translation>
    </message>
    <message>
        <source>Show all</source>
        <translation>모두 보기</translation>
    </message>
</context>
<context>
    <name>RequestTexts</name>
    <message>
        <source>%1 is asking for the status</source>
        <translation>%1이(가) 상태를 묻고 있습니다</translation>
    </message>
    <message>
        <source>%1 asked for the status</source>
        <translation>%1이(가) 상태를 물었습니다</translation>
    </message>
    <message>
        <source>%1 tried to read the status</source>
        <translation>%1이(가) 상태를 읽으려 했습니다</translation>
    </message>
    <message>
        <source>%1 is listing your sessions</source>
        <translation>%1이(가) 세션 목록을 가져오고 있습니다</translation>
    </message>
    <message>
        <source>%1 listed your sessions</source>
        <translation>%1이(가) 세션 목록을 가져왔습니다</translation>
    </message>
    <message>
        <source>%1 tried to list your sessions</source>
        <translation>%1이(가) 세션 목록을 가져오려 했습니다</translation>
    </message>
    <message>
        <source>%1 is looking which session is in front</source>
        <translation>%1이(가) 맨 앞의 세션을 확인하고 있습니다</translation>
    </message>
    <message>
        <source>%1 looked which session is in front</source>
        <translation>%1이(가) 맨 앞의 세션을 확인했습니다</translation>
    </message>
    <message>
        <source>%1 tried to find the session in front</source>
        <translation>%1이(가) 맨 앞의 세션을 찾으려 했습니다</translation>
    </message>
    <message>
        <source>%1 is opening a window</source>
        <translation>%1이(가) 창을 열고 있습니다</translation>
    </message>
    <message>
        <source>%1 opened a window</source>
        <translation>%1이(가) 창을 열었습니다</translation>
    </message>
    <message>
        <source>%1 tried to open a window</source>
        <translation>%1이(가) 창을 열려고 했습니다</translation>
    </message>
    <message>
        <source>%1 is sending a command to %2</source>
        <translation>%1이(가) %2에 명령을 보내고 있습니다</translation>
    </message>
    <message>
        <source>%1 sent a command to %2</source>
        <translation>%1이(가) %2에 명령을 보냈습니다</translation>
    </message>
    <message>
        <source>%1 tried to send a command to %2</source>
        <translation>%1이(가) %2에 명령을 보내려 했습니다</translation>
    </message>
    <message>
        <source>%1 is pressing a key in %2</source>
        <translation>%1이(가) %2에서 키를 누르고 있습니다</translation>
    </message>
    <message>
        <source>%1 pressed a key in %2</source>
        <translation>%1이(가) %2에서 키를 눌렀습니다</translation>
    </message>
    <message>
        <source>%1 tried to press a key in %2</source>
        <translation>%1이(가) %2에서 키를 누르려 했습니다</translation>
    </message>
    <message>
        <source>%1 is reading %2</source>
        <translation>%1이(가) %2의 출력을 읽고 있습니다</translation>
    </message>
    <message>
        <source>%1 read %2</source>
        <translation>%1이(가) %2의 출력을 읽었습니다</translation>
    </message>
    <message>
        <source>%1 tried to read %2</source>
        <translation>%1이(가) %2의 출력을 읽으려 했습니다</translation>
    </message>
    <message>
        <source>%1 is taking a picture of %2</source>
        <translation>%1이(가) %2의 화면을 캡처하고 있습니다</translation>
    </message>
    <message>
        <source>%1 took a picture of %2</source>
        <translation>%1이(가) %2의 화면을 캡처했습니다</translation>
    </message>
    <message>
        <source>%1 tried to take a picture of %2</source>
        <translation>%1이(가) %2의 화면을 캡처하려 했습니다</translation>
    </message>
    <message>
        <source>%1 is bringing %2 to the front</source>
        <translation>%1이(가) %2 세션을 맨 앞으로 가져오고 있습니다</translation>
    </message>
    <message>
        <source>%1 brought %2 to the front</source>
        <translation>%1이(가) %2 세션을 맨 앞으로 가져왔습니다</translation>
    </message>
    <message>
        <source>%1 tried to bring %2 to the front</source>
        <translation>%1이(가) %2 세션을 맨 앞으로 가져오려 했습니다</translation>
    </message>
    <message>
        <source>An agent</source>
        <translation>이름 없는 에이전트</translation>
    </message>
    <message>
        <source>Velmora has it.</source>
        <translation>Velmora가 받았습니다.</translation>
    </message>
    <message>
        <source>It is under way.</source>
        <translation>진행 중입니다.</translation>
    </message>
    <message>
        <source>It reached the terminal. What came of it is not tracked.</source>
        <translation>터미널에 전달되었습니다. 실행 결과는 추적하지 않습니다.</translation>
    </message>
    <message>
        <source>The agent got what it asked to read.</source>
        <translation>에이전트가 읽으려던 내용을 받았습니다.</translation>
    </message>
    <message>
        <source>Velmora refused it.</source>
        <translation>Velmora가 거부했습니다.</translation>
    </message>
    <message>
        <source>It was allowed, but did not work.</source>
        <translation>허용되었지만 실패했습니다.</translation>
    </message>
    <message>
        <source>Velmora ended before it was done.</source>
        <translation>끝나기 전에 Velmora가 종료되었습니다.</translation>
    </message>
</context>
<context>
    <name>SearchField</name>
    <message>
        <source>Clear search</source>
        <translation>검색어 지우기</translation>
    </message>
</context>
<context>
    <name>SessionColumns</name>
    <message>
        <source>Session</source>
        <translation>세션</translation>
    </message>
    <message>
        <source>Permission</source>
        <translation>권한</translation>
    </message>
</context>
<context>
    <name>SessionPolicy</name>
    <message>
        <source>Safe: managed sessions only</source>
        <translation>안전: 관리형 세션만</translation>
    </message>
    <message>
        <source>Selective: existing sessions start read-only</source>
        <translation>선택적: 기존 세션은 읽기 전용으로 시작</translation>
    </message>
    <message>
        <source>Agents may type into every idle session of yours.</source>
        <translation>에이전트가 사용 중이 아닌 모든 세션에 입력할 수 있습니다.</translation>
    </message>
    <message>
        <source>Agents may read your sessions, and type only into windows that they opened.</source>
        <translation>에이전트가 세션을 읽을 수 있지만, 직접 연 창에만 입력할 수 있습니다.</translation>
    </message>
</context>
<context>
    <name>SessionPolicyChoices</name>
    <message>
        <source>Session policy</source>
        <translation>세션 정책</translation>
    </message>
</context>
<context>
    <name>SessionRow</name>
    <message>
        <source>Busy</source>
        <translation>사용 중</translation>
    </message>
    <message>
        <source>Busy: a program is running, so agents may not type.</source>
        <translation>사용 중: 프로그램이 실행 중이므로 에이전트가 입력할 수 없습니다.</translation>
    </message>
    <message>
        <source>Permission</source>
        <translation>권한</translation>
    </message>
    <message>
        <source>Show in Terminal</source>
        <translation>터미널에서 보기</translation>
    </message>
</context>
<context>
    <name>SessionsView</name>
    <message>
        <source>Sessions</source>
        <translation>세션</translation>
    </message>
    <message>
        <source>Show busy</source>
        <translation>사용 중 표시</translation>
    </message>
    <message>
        <source>Show read-only</source>
        <translation>읽기 전용 표시</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>새로 고침</translation>
    </message>
</context>
<context>
    <name>SettingsCopyButton</name>
    <message>
        <source>Copied</source>
        <translation>복사됨</translation>
    </message>
</context>
<context>
    <name>SettingsView</name>
    <message>
        <source>Settings</source>
        <translation>설정</translation>
    </message>
    <message>
        <source>Settings pages</source>
        <translation>설정 페이지</translation>
    </message>
    <message>
        <source>General</source>
        <translation>일반</translation>
    </message>
    <message>
        <source>Privacy</source>
        <translation>개인정보</translation>
    </message>
    <message>
        <source>MCP Connection</source>
        <translation>MCP 연결</translation>
    </message>
</context>
<context>
    <name>Sidebar</name>
    <message>
        <source>Sections</source>
        <translation>섹션</translation>
    </message>
    <message>
        <source>About Velmora</source>
        <translation>Velmora에 관하여</translation>
    </message>
    <message>
        <source>About</source>
        <translation>정보</translation>
    </message>
    <message>
        <source>Quit Velmora</source>
        <translation>Velmora 종료</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>종료</translation>
    </message>
</context>
<context>
    <name>StatusFigures</name>
    <message>
        <source>Bridge</source>
        <translation>브리지</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>상태</translation>
    </message>
    <message>
        <source>Sessions</source>
        <translation>세션</translation>
    </message>
</context>
<context>
    <name>TerminalCard</name>
    <message>
        <source>Automation</source>
        <translation>자동화</translation>
    </message>
    <message>
        <source>Windows</source>
        <translation>창</translation>
    </message>
    <message>
        <source>Last request</source>
        <translation>마지막 요청</translation>
    </message>
    <message>
        <source>None</source>
        <translation>없음</translation>
    </message>
    <message>
        <source>Recent error</source>
        <translation>최근 오류</translation>
    </message>
</context>
<context>
    <name>velmora::ClientListModel</name>
    <message numerus="yes">
        <source>%n request(s) in the last %1 minutes, one is under way</source>
        <translation>
            <numerusform>최근 %1분 동안 요청 %n건, 한 건 진행 중</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n request(s) in the last %1 minutes, the last at %2</source>
        <translation>
            <numerusform>최근 %1분 동안 요청 %n건, 마지막 요청 %2</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>velmora::ConnectionTest</name>
    <message>
        <source>The helper reached Velmora. This is the answer that it got:</source>
        <translation>헬퍼가 Velmora에 연결했습니다. 받은 응답은 다음과 같습니다.</translation>
    </message>
    <message>
        <source>The helper got no answer from Velmora.</source>
        <translation>헬퍼가 Velmora에서 응답을 받지 못했습니다.</translation>
    </message>
    <message>
        <source>The helper at %1 could not be started. Install Velmora again.</source>
        <translation>%1에 있는 헬퍼를 시작할 수 없습니다. Velmora를 다시 설치하세요.</translation>
    </message>
</context>
<context>
    <name>velmora::DashboardViewModel</name>
    <message>
        <source>Terminal automation permission is required. Open System Settings &gt; Privacy &amp; Security &gt; Automation and allow Velmora.</source>
        <translation>터미널 자동화 권한이 필요합니다. 시스템 설정 &gt; 개인정보 보호 및 보안 &gt; 자동화를 열고 Velmora를 허용하세요.</translation>
    </message>
    <message>
        <source>Terminal automation permission is required.</source>
        <translation>터미널 자동화 권한이 필요합니다.</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>일시 중지됨</translation>
    </message>
    <message>
        <source>Active</source>
        <translation>활성</translation>
    </message>
    <message>
        <source>No agent can reach it.</source>
        <translation>에이전트가 연결할 수 없습니다.</translation>
    </message>
    <message>
        <source>Agents may read, but change nothing.</source>
        <translation>에이전트가 읽을 수만 있고 변경할 수 없습니다.</translation>
    </message>
    <message>
        <source>Agents may use your sessions.</source>
        <translation>에이전트가 세션을 사용할 수 있습니다.</translation>
    </message>
    <message>
        <source>Resume MCP changes</source>
        <translation>MCP 변경 다시 시작</translation>
    </message>
    <message>
        <source>Pause MCP changes</source>
        <translation>MCP 변경 일시 중지</translation>
    </message>
    <message>
        <source>%1 is running.</source>
        <translation>%1이(가) 실행 중입니다.</translation>
    </message>
    <message>
        <source>%1 is running, without a window.</source>
        <translation>%1이(가) 창 없이 실행 중입니다.</translation>
    </message>
    <message>
        <source>%1 is not running.</source>
        <translation>%1이(가) 실행 중이 아닙니다.</translation>
    </message>
    <message>
        <source>%1 does not answer.</source>
        <translation>%1이(가) 응답하지 않습니다.</translation>
    </message>
    <message>
        <source>Velmora may use %1.</source>
        <translation>Velmora가 %1을(를) 사용할 수 있습니다.</translation>
    </message>
    <message>
        <source>Velmora may not use %1.</source>
        <translation>Velmora가 %1을(를) 사용할 수 없습니다.</translation>
    </message>
    <message>
        <source>Not known yet.</source>
        <translation>아직 알 수 없습니다.</translation>
    </message>
    <message>
        <source>None was found.</source>
        <translation>찾은 세션이 없습니다.</translation>
    </message>
    <message>
        <source>Agents may type into none.</source>
        <translation>에이전트가 입력할 수 있는 세션이 없습니다.</translation>
    </message>
    <message>
        <source>Agents may type into all of them.</source>
        <translation>에이전트가 모든 세션에 입력할 수 있습니다.</translation>
    </message>
    <message>
        <source>Agents may type into %1 of them.</source>
        <translation>에이전트가 그중 %1개에 입력할 수 있습니다.</translation>
    </message>
</context>
<context>
    <name>velmora::GeneralSettingsViewModel</name>
    <message>
        <source>Show Velmora in the tray</source>
        <translation>트레이에 Velmora 표시</translation>
    </message>
    <message>
        <source>Show Velmora in the menu bar</source>
        <translation>메뉴 막대에 Velmora 표시</translation>
    </message>
    <message>
        <source>As the system</source>
        <translation>시스템 언어</translation>
    </message>
</context>
<context>
    <name>velmora::HistoryViewModel</name>
    <message>
        <source>All tools</source>
        <translation>모든 도구</translation>
    </message>
    <message>
        <source>All statuses</source>
        <translation>모든 상태</translation>
    </message>
    <message>
        <source>Your settings keep no output.</source>
        <translation>현재 설정에서는 출력이 저장되지 않습니다.</translation>
    </message>
    <message>
        <source>Your settings keep no text of commands.</source>
        <translation>현재 설정에서는 명령 내용이 저장되지 않습니다.</translation>
    </message>
    <message>
        <source>Your settings keep neither the text of commands nor output.</source>
        <translation>현재 설정에서는 명령 내용과 출력이 저장되지 않습니다.</translation>
    </message>
</context>
<context>
    <name>velmora::LaunchAtLoginController</name>
    <message>
        <source>Login item could not be changed. Review Login Items in System Settings.</source>
        <translation>로그인 항목을 바꿀 수 없습니다. 시스템 설정에서 로그인 항목을 확인하세요.</translation>
    </message>
</context>
<context>
    <name>velmora::MCPConnectionViewModel</name>
    <message>
        <source>This configuration names the helper of the Velmora that is running now. No URL, port, or network authentication is used.</source>
        <translation>이 설정은 지금 실행 중인 Velmora의 헬퍼를 가리킵니다. URL, 포트, 네트워크 인증은 사용하지 않습니다.</translation>
    </message>
    <message>
        <source>This configuration assumes Velmora.app is installed in /Applications. No URL, port, or network authentication is used.</source>
        <translation>이 설정은 Velmora.app이 /Applications에 설치되어 있다고 가정합니다. URL, 포트, 네트워크 인증은 사용하지 않습니다.</translation>
    </message>
</context>
<context>
    <name>velmora::MainWindowViewModel</name>
    <message>
        <source>You switched Velmora&apos;s place in the tray off, so closing the window quits it. MCP clients cannot use the terminal until you start Velmora again.</source>
        <translation>트레이에 Velmora를 표시하지 않도록 설정했으므로 창을 닫으면 Velmora가 종료됩니다. Velmora를 다시 시작할 때까지 MCP 클라이언트가 터미널을 사용할 수 없습니다.</translation>
    </message>
    <message>
        <source>This desktop has no tray to keep Velmora in, so closing the window quits it. MCP clients cannot use the terminal until you start Velmora again.</source>
        <translation>이 데스크톱에는 Velmora를 둘 트레이가 없으므로 창을 닫으면 Velmora가 종료됩니다. Velmora를 다시 시작할 때까지 MCP 클라이언트가 터미널을 사용할 수 없습니다.</translation>
    </message>
    <message>
        <source>© 2026 The Velmora authors. Free software under the Apache License, Version 2.0.</source>
        <translation>© 2026 The Velmora authors. Apache License, Version 2.0에 따른 자유 소프트웨어입니다.</translation>
    </message>
    <message>
        <source>With the work of others, under their own licenses: %1.</source>
        <translation>각자의 라이선스를 따르는 다음 소프트웨어를 사용합니다: %1.</translation>
    </message>
</context>
<context>
    <name>velmora::MenuBarViewModel</name>
    <message>
        <source>Another bridge is serving</source>
        <translation>다른 브리지가 실행 중입니다</translation>
    </message>
    <message>
        <source>MCP Paused</source>
        <translation>MCP 일시 중지됨</translation>
    </message>
    <message>
        <source>MCP Active</source>
        <translation>MCP 활성</translation>
    </message>
    <message>
        <source>Clients: %1</source>
        <translation>클라이언트: %1</translation>
    </message>
    <message>
        <source>Managed sessions: %1</source>
        <translation>관리형 세션: %1</translation>
    </message>
    <message>
        <source>Last error: %1</source>
        <translation>마지막 오류: %1</translation>
    </message>
    <message>
        <source>Resume changes</source>
        <translation>변경 다시 시작</translation>
    </message>
    <message>
        <source>Pause changes</source>
        <translation>변경 일시 중지</translation>
    </message>
</context>
<context>
    <name>velmora::NowViewModel</name>
    <message>
        <source>Changes are paused</source>
        <translation>변경이 일시 중지되었습니다</translation>
    </message>
    <message>
        <source>No agent is at work</source>
        <translation>작업 중인 에이전트가 없습니다</translation>
    </message>
    <message>
        <source>Agents may read, but change nothing.</source>
        <translation>에이전트가 읽을 수만 있고 변경할 수 없습니다.</translation>
    </message>
    <message>
        <source>since %1</source>
        <translation>%1부터</translation>
    </message>
    <message numerus="yes">
        <source>since %1, and %n more request(s)</source>
        <translation>
            <numerusform>%1부터, 그 밖에 요청 %n건</numerusform>
        </translation>
    </message>
    <message>
        <source>no agent has called yet</source>
        <translation>아직 요청한 에이전트가 없습니다</translation>
    </message>
</context>
<context>
    <name>velmora::OnboardingViewModel</name>
    <message>
        <source>Step %1 of %2</source>
        <translation>%2단계 중 %1단계</translation>
    </message>
    <message>
        <source>No session is open now.</source>
        <translation>지금 열려 있는 세션이 없습니다.</translation>
    </message>
    <message>
        <source>%1 more</source>
        <translation>그 밖에 %1개</translation>
    </message>
    <message>
        <source>Open now: %1</source>
        <translation>지금 열려 있는 세션: %1</translation>
    </message>
    <message>
        <source>Agents will type into none of these unless you allow it.</source>
        <translation>사용자가 허용하지 않으면 에이전트가 이 세션들에 입력하지 않습니다.</translation>
    </message>
    <message>
        <source>Agents will be able to type into all of these.</source>
        <translation>에이전트가 이 세션 모두에 입력할 수 있게 됩니다.</translation>
    </message>
    <message>
        <source>Agents will be able to type into all of these; into the busy ones (%1) when they are idle.</source>
        <translation>에이전트가 이 세션 모두에 입력할 수 있게 됩니다. 사용 중인 세션(%1개)에는 작업이 끝난 다음부터 입력할 수 있습니다.</translation>
    </message>
    <message>
        <source>Finish</source>
        <translation>완료</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>계속</translation>
    </message>
</context>
<context>
    <name>velmora::OtherBridgeViewModel</name>
    <message>
        <source>process %1</source>
        <translation>프로세스 %1</translation>
    </message>
    <message>
        <source>since %1</source>
        <translation>%1부터</translation>
    </message>
    <message>
        <source>Another bridge of yours is serving</source>
        <translation>사용자의 다른 브리지가 실행 중입니다</translation>
    </message>
    <message>
        <source>MCP clients reach that bridge. This window can neither pause it nor show what it does.</source>
        <translation>MCP 클라이언트는 그 브리지에 연결됩니다. 이 창에서는 그 브리지를 일시 중지하거나 작업을 볼 수 없습니다.</translation>
    </message>
    <message>
        <source>Ending it…</source>
        <translation>종료하는 중…</translation>
    </message>
    <message>
        <source>End it and take over</source>
        <translation>종료하고 넘겨받기</translation>
    </message>
</context>
<context>
    <name>velmora::PackageKitTransaction</name>
    <message>
        <source>The package manager gave no transaction.</source>
        <translation>패키지 관리자가 작업을 시작하지 않았습니다.</translation>
    </message>
    <message>
        <source>The package manager did not finish.</source>
        <translation>패키지 관리자가 작업을 끝내지 못했습니다.</translation>
    </message>
    <message>
        <source>The package manager ended before it answered.</source>
        <translation>패키지 관리자가 응답하기 전에 종료되었습니다.</translation>
    </message>
    <message>
        <source>The package manager did not answer.</source>
        <translation>패키지 관리자가 응답하지 않았습니다.</translation>
    </message>
    <message>
        <source>There is no system bus.</source>
        <translation>시스템 버스가 없습니다.</translation>
    </message>
</context>
<context>
    <name>velmora::PackageKitUpdater</name>
    <message>
        <source>Asking the system&apos;s package manager.</source>
        <translation>시스템의 패키지 관리자에 확인하고 있습니다.</translation>
    </message>
    <message>
        <source>Updates come from your system&apos;s package sources and are installed only after you approve them.</source>
        <translation>업데이트는 시스템의 패키지 저장소에서 제공되며, 승인한 다음에만 설치됩니다.</translation>
    </message>
    <message>
        <source>This copy of Velmora was not installed by the system&apos;s package manager, so it cannot look for updates.</source>
        <translation>이 Velmora는 시스템의 패키지 관리자로 설치되지 않아 업데이트를 확인할 수 없습니다.</translation>
    </message>
    <message>
        <source>Velmora looks for updates through PackageKit, which this system does not have.</source>
        <translation>Velmora는 PackageKit으로 업데이트를 확인하지만, 이 시스템에는 PackageKit이 없습니다.</translation>
    </message>
    <message>
        <source>The system&apos;s package manager does not answer, so Velmora cannot look for updates.</source>
        <translation>시스템의 패키지 관리자가 응답하지 않아 업데이트를 확인할 수 없습니다.</translation>
    </message>
    <message>
        <source>The check failed: %1</source>
        <translation>업데이트를 확인하지 못했습니다: %1</translation>
    </message>
    <message>
        <source>Velmora is up to date.</source>
        <translation>Velmora가 최신 버전입니다.</translation>
    </message>
    <message>
        <source>Version %1 is available. Install it with your system&apos;s updates.</source>
        <translation>버전 %1을(를) 사용할 수 있습니다. 시스템 업데이트로 설치하세요.</translation>
    </message>
</context>
<context>
    <name>velmora::PrivacySettingsViewModel</name>
    <message>
        <source>The history is kept in memory only, until Velmora ends.</source>
        <translation>기록은 Velmora가 종료될 때까지 메모리에만 보관됩니다.</translation>
    </message>
    <message>
        <source>The history is on disk while Velmora runs, and deleted when it ends.</source>
        <translation>기록은 Velmora가 실행되는 동안 디스크에 보관되고, 종료될 때 삭제됩니다.</translation>
    </message>
    <message>
        <source>The history stays on disk when Velmora ends.</source>
        <translation>기록은 Velmora가 종료되어도 디스크에 남습니다.</translation>
    </message>
    <message numerus="yes">
        <source>Make the %n known session(s) read-only now</source>
        <translation>
            <numerusform>알려진 세션 %n개를 지금 읽기 전용으로 바꾸기</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>velmora::RecordListModel</name>
    <message>
        <source>No target</source>
        <translation>대상 없음</translation>
    </message>
    <message>
        <source>Received %1</source>
        <translation>%1 받음</translation>
    </message>
    <message>
        <source>Completed %1</source>
        <translation>%1 완료</translation>
    </message>
    <message>
        <source>The text of this command was not kept.</source>
        <translation>이 명령의 내용은 저장되지 않았습니다.</translation>
    </message>
    <message>
        <source>Delivered to Terminal; execution result is not tracked.</source>
        <translation>터미널에 전달됨. 실행 결과는 추적하지 않습니다.</translation>
    </message>
    <message>
        <source>%1 ms</source>
        <translation>%1 ms</translation>
    </message>
</context>
<context>
    <name>velmora::SessionListModel</name>
    <message>
        <source>Agents read and type</source>
        <translation>에이전트가 읽고 입력합니다</translation>
    </message>
    <message>
        <source>Agents read and type, as you allowed</source>
        <translation>사용자가 허용하여 에이전트가 읽고 입력합니다</translation>
    </message>
    <message>
        <source>Agents read only</source>
        <translation>에이전트가 읽기만 합니다</translation>
    </message>
    <message>
        <source>Agents neither read nor type</source>
        <translation>에이전트가 읽지도 입력하지도 않습니다</translation>
    </message>
    <message>
        <source>Window %1, tab %2</source>
        <translation>창 %1, 탭 %2</translation>
    </message>
    <message>
        <source>opened by an agent</source>
        <translation>에이전트가 연 창</translation>
    </message>
    <message>
        <source>last used %1</source>
        <translation>마지막 사용 %1</translation>
    </message>
</context>
<context>
    <name>velmora::SessionsViewModel</name>
    <message>
        <source>A permission guides an agent that uses Velmora as intended. It does not hold one that means to get around it.</source>
        <translation>권한은 Velmora를 정해진 방식으로 사용하는 에이전트를 이끕니다. 일부러 우회하려는 에이전트를 막지는 못합니다.</translation>
    </message>
    <message numerus="yes">
        <source>%n session(s) are hidden by the filters.</source>
        <translation>
            <numerusform>필터 때문에 세션 %n개가 숨겨져 있습니다.</numerusform>
        </translation>
    </message>
    <message>
        <source>Open %1 or create a managed session from an MCP client.</source>
        <translation>%1을(를) 열거나 MCP 클라이언트에서 관리형 세션을 만드세요.</translation>
    </message>
    <message>
        <source>No Terminal sessions</source>
        <translation>터미널 세션이 없습니다</translation>
    </message>
</context>
<context>
    <name>velmora::UpdaterService</name>
    <message>
        <source>Last checked %1</source>
        <translation>마지막 확인 %1</translation>
    </message>
</context>
<context>
    <name>velmora::VelmoraMenuBar</name>
    <message>
        <source>Open Velmora</source>
        <translation>Velmora 열기</translation>
    </message>
    <message>
        <source>Open Permission Settings</source>
        <translation>권한 설정 열기</translation>
    </message>
    <message>
        <source>%1 needs no permission</source>
        <translation>%1에는 권한이 필요하지 않습니다</translation>
    </message>
</context>
</TS>
