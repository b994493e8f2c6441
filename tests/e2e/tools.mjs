// What every client must see of the nine tools, whichever way it calls them.
import assert from 'node:assert/strict';
import { readFile } from 'node:fs/promises';
import { setTimeout as pause } from 'node:timers/promises';

export const tools = [
  'terminal_status', 'terminal_list_sessions', 'terminal_get_active_session', 'terminal_create_session',
  'terminal_send_command', 'terminal_send_key', 'terminal_read_output', 'terminal_capture_screen',
  'terminal_focus_session',
];
const patienceMilliseconds = 20000;

// The least that the tool takes; without it the call goes nowhere.
export function neededArguments(tool) {
  if (tools.indexOf(tool) < tools.indexOf('terminal_send_command')) return {};
  const sessionId = '00000000-0000-4000-8000-000000000000';
  if (tool === 'terminal_send_command') return { sessionId, command: 'true' };
  return tool === 'terminal_send_key' ? { sessionId, key: 'return' } : { sessionId };
}

// The envelope that a result carries, the same in both places.
export function envelopeOf(result) {
  // The text of a failure begins with a line in words.
  const { text } = result.content[0];
  const json = result.isError ? text.slice(text.indexOf('\n') + 1) : text;
  assert.deepEqual(JSON.parse(json), result.structuredContent);
  assert.equal(result.isError, !result.structuredContent.ok);
  return result.structuredContent;
}

// Drives all nine tools on the running application. `call` takes a tool's name and its arguments and gives the
// result; `checks` counts one claim a tool.
export async function driveTools(checks, name, call) {
  const driven = new Set();
  const succeed = async (tool, args = {}) => {
    const result = await call(tool, args);
    const envelope = envelopeOf(result);
    assert.equal(envelope.ok, true, JSON.stringify(envelope.error));
    driven.add(tool);
    return { result, data: envelope.data };
  };
  const readUntil = async (sessionId, text) => {
    const end = Date.now() + patienceMilliseconds;
    while (true) {
      const { data } = await succeed('terminal_read_output', { sessionId, source: 'history' });
      if (data.text.includes(text)) return data;
      assert.ok(Date.now() < end, `${text} never came: ${data.text}`);
      await pause(50);
    }
  };
  // Commands and keys are taken at the shell's prompt only.
  const waitForPrompt = async (sessionId) => {
    const end = Date.now() + patienceMilliseconds;
    while (true) {
      const { data } = await succeed('terminal_list_sessions');
      if (!data.sessions.find((session) => session.sessionId === sessionId).busy) return;
      assert.ok(Date.now() < end, 'the shell never came back to its prompt');
      await pause(50);
    }
  };
  const claim = (tool, body) => checks.check(`${name}: ${tool}`, body);
  let sessionId = 'none was created';

  await claim('terminal_status', async () => {
    const { data } = await succeed('terminal_status');
    assert.equal(data.status.terminalState, 'available');
    assert.ok(!Number.isNaN(Date.parse(data.status.updatedAt)), 'a date for people');
  });
  await claim('terminal_create_session', async () => {
    const { data } = await succeed('terminal_create_session', { kind: 'window' });
    assert.equal(data.session.permission, 'managed');
    sessionId = data.session.sessionId;
  });
  await claim('terminal_send_command', async () => {
    const { data } = await succeed('terminal_send_command', { sessionId, command: 'echo "한 $((40 + 2))"' });
    assert.equal(data.deliveryStatus, 'delivered_to_terminal');
  });
  await claim('terminal_read_output', () => readUntil(sessionId, '한 42'));
  await claim('terminal_send_key', async () => {
    await waitForPrompt(sessionId);
    await succeed('terminal_send_command', { sessionId, command: `bind -x '"\\e[A": echo "key: $((6 * 7))"'` });
    await waitForPrompt(sessionId);
    const { data } = await succeed('terminal_send_key', { sessionId, key: 'upArrow', repeatCount: 1 });
    assert.equal(data.repeatCount, 1);
    await readUntil(sessionId, 'key: 42');
  });
  await claim('terminal_capture_screen', async () => {
    const { result, data } = await succeed('terminal_capture_screen', { sessionId });
    const picture = await readFile(data.imagePath);
    const [, link, image] = result.content;
    assert.equal(link.type, 'resource_link');
    assert.equal(link.uri, `file://${data.imagePath}`);
    assert.deepEqual({ type: image.type, mimeType: image.mimeType }, { type: 'image', mimeType: 'image/png' });
    assert.ok(picture.equals(Buffer.from(image.data, 'base64')), 'the picture is the file');
  });
  await claim('terminal_focus_session', async () => {
    const { data } = await succeed('terminal_focus_session', { sessionId });
    assert.equal(data.sessionId, sessionId);
  });
  await claim('terminal_list_sessions', async () => {
    const { data } = await succeed('terminal_list_sessions', { includeBusy: true });
    assert.ok(data.sessions.some((session) => session.sessionId === sessionId));
  });
  await claim('terminal_get_active_session', async () => {
    const { data } = await succeed('terminal_get_active_session');
    assert.equal(data.session.validity, 'valid');
  });
  await checks.check(`${name}: all nine tools were driven`, () => assert.deepEqual([...driven].sort(), [...tools].sort()));
}
