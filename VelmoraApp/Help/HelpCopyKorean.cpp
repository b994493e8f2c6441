// The help in Korean. Names of keys, tools and fields, and labels that are English on the screen, stay
// English.
#include "VelmoraApp/Help/HelpCopy.h"

namespace velmora {

namespace {

constexpr HelpCopy copyForTerminalApp{
    .languageLabel = "언어",
    .installationTitle = "설치 위치",
    .installationText = "이 안내는 Velmora.app이 /Applications에 설치되어 있다고 가정합니다.",
    .copyInstallPath = "설치 경로 복사",
    .permissionsTitle = "1. macOS 권한 허용",
    .permissionsInstruction =
        "Velmora를 엽니다. macOS가 자동화, 손쉬운 사용(접근성), 화면 기록 권한을 요청하면 허용합니다.",
    .permissionsRecovery =
        "권한 요청을 거부했다면 시스템 설정 > 개인정보 보호 및 보안을 엽니다. 자동화에서 Terminal과 System Events를, 손쉬운 사용(접근성)에서 Velmora를, 화면 기록에서 Velmora를 켭니다. 그런 다음 Dashboard를 새로 고칩니다.",
    .registrationTitle = "2. stdio 헬퍼 등록",
    .registrationInstruction = "MCP 클라이언트의 로컬 stdio 서버 설정에 다음 JSON을 추가합니다.",
    .copyMCPConfiguration = "MCP 설정 복사",
    .openClawJSONInstruction = "OpenClaw에서는 ~/.openclaw/openclaw.json에 다음 형식으로 추가합니다.",
    .copyOpenClawJSON = "OpenClaw MCP 설정 복사",
    .openClawCLIInstruction =
        "OpenClaw CLI를 사용할 수 있다면 다음 명령으로 같은 서버 정의를 저장하고 연결을 점검합니다.",
    .copyOpenClawCLI = "OpenClaw CLI 명령 복사",
    .copyHelperPath = "헬퍼 경로 복사",
    .noNetworkText = "URL, 포트, 토큰은 필요하지 않습니다. 설정 후 MCP 클라이언트를 다시 연결합니다.",
    .statusTitle = "3. 연결 상태 확인",
    .statusInstruction = "먼저 브리지와 Terminal.app의 상태를 확인합니다.",
    .statusNote = "Dashboard에서 MCP가 Active이고 Terminal 자동화가 granted인지 확인합니다.",
    .createSessionTitle = "4. 관리형 Terminal 창 만들기",
    .createSessionInstruction = "명령을 안전하게 전달할 수 있는 관리형 창을 새로 만듭니다.",
    .createSessionNote =
        "이후 호출에는 응답의 data.session.sessionId를 사용합니다. Terminal의 공식 AppleScript 사전은 안전한 탭 생성을 제공하지 않으므로 window만 지원합니다.",
    .sendCommandTitle = "5. 명령 보내기",
    .sendCommandInstruction = "생성 응답에서 받은 sessionId와 실행할 명령 문자열을 정확하게 보냅니다.",
    .sendCommandNote =
        "delivered_to_terminal은 명령이 Terminal에 전달되었다는 뜻입니다. 명령의 완료나 성공, 종료 코드를 보장하지는 않습니다. 사용 중인 세션은 거부됩니다.",
    .specialKeyTitle = "6. 특수 키 보내기",
    .specialKeyInstruction = "위쪽 또는 아래쪽 화살표와 같은 특수 키를 키 이름으로 보냅니다.",
    .specialKeyNote =
        "지원하는 키는 upArrow, downArrow, leftArrow, rightArrow, return, escape, tab, delete, forwardDelete, home, end, pageUp, pageDown입니다. 특수 키를 입력하면 대상 Terminal 탭이 맨 앞으로 나오며, macOS 손쉬운 사용(접근성) 권한과 System Events 자동화 권한이 필요합니다.",
    .readOutputTitle = "7. 출력 읽기",
    .readOutputInstruction =
        "같은 sessionId의 보이는 화면이나 스크롤백에서 끝부분을 제한된 길이만큼 읽습니다.",
    .readOutputNote =
        "source는 visible 또는 history이며, maxCharacters는 1부터 50,000까지 지정할 수 있습니다. TUI 화면은 terminal_capture_screen으로 PNG를 요청합니다.",
    .focusSessionTitle = "8. Terminal에서 세션 보기",
    .focusSessionInstruction =
        "선택한 세션을 명시적으로 화면에 표시하려는 경우에만 포커스 도구를 호출합니다.",
    .focusSessionNote = "상태 확인, 명령 전달, 출력 읽기는 Terminal을 자동으로 맨 앞으로 가져오지 않습니다.",
    .existingSessionTitle = "기존 세션",
    .existingSessionNote =
        "terminal_list_sessions로 세션을 확인합니다. 기본 정책에서는 기존 세션이 managed로, Selective 정책에서는 readOnly로 등록됩니다. 닫히거나 변경된 sessionId는 다른 탭으로 대체되지 않습니다.",
    .toolCallCopyHelp = [](std::string_view toolName) { return std::string(toolName) + " 호출 예시 복사"; },
};

constexpr HelpCopy copyForTmux = [] {
  auto copy = copyForTerminalApp;
  copy.installationText = "이 안내는 지금 실행 중인 Velmora의 위치를 사용합니다.";
  copy.permissionsTitle = "1. tmux 시작";
  copy.permissionsInstruction =
      "Velmora에는 시스템 권한이 필요하지 않습니다. 사용하는 터미널에서 tmux를 시작하거나 MCP 클라이언트로 창을 만듭니다.";
  copy.permissionsRecovery =
      "Dashboard에 tmux가 available로 표시되지 않으면 tmux 3.2 이상이 자신의 계정으로 실행 중인지 확인합니다. 그런 다음 Dashboard를 새로 고칩니다.";
  copy.statusInstruction = "먼저 브리지와 tmux의 상태를 확인합니다.";
  copy.statusNote = "Dashboard에서 Bridge가 Active이고 Automation이 granted인지 확인합니다.";
  copy.createSessionTitle = "4. 관리형 tmux 창 만들기";
  copy.createSessionNote =
      "이후 호출에는 응답의 data.session.sessionId를 사용합니다. kind는 window만 지원합니다. 새 창은 별도의 tmux 세션으로 열리며 tmux attach로 볼 수 있습니다.";
  copy.sendCommandNote =
      "delivered_to_terminal은 명령이 tmux에 전달되었다는 뜻입니다. 명령의 완료나 성공, 종료 코드를 보장하지는 않습니다. 사용 중인 세션은 거부됩니다.";
  copy.specialKeyNote =
      "지원하는 키는 upArrow, downArrow, leftArrow, rightArrow, return, escape, tab, delete, forwardDelete, home, end, pageUp, pageDown입니다. 키는 해당 세션의 tmux 패널(pane)로 전달됩니다. 패널이 맨 앞에 있지 않아도 되며 권한도 필요하지 않습니다.";
  copy.focusSessionTitle = "8. tmux에서 세션 보기";
  copy.focusSessionNote =
      "상태 확인, 명령 전달, 출력 읽기는 다른 tmux 세션이나 패널(pane)로 전환하지 않습니다.";
  copy.existingSessionNote =
      "terminal_list_sessions로 세션을 확인합니다. 기본 정책에서는 기존 세션이 managed로, Selective 정책에서는 readOnly로 등록됩니다. 닫히거나 변경된 sessionId는 다른 패널(pane)로 대체되지 않습니다.";
  return copy;
}();

}  // namespace

constexpr HelpTexts koreanHelp{.copyForTerminalApp = copyForTerminalApp,
                               .copyForTmux = copyForTmux,
                               .buttonWords = {.copy = "복사", .copied = "복사됨"}};

}  // namespace velmora
