// Drives the helper through the MCP Inspector's command line: one process a call, in each of its three eras.
//
//   node inspector.mjs PATH-OF-VELMORA
//
// XDG_RUNTIME_DIR says below which directory the application runs. Prints "N passed, N failed" and exits with 1 when
// something failed.
import assert from 'node:assert/strict';
import { execFile } from 'node:child_process';
import { fileURLToPath } from 'node:url';
import { promisify } from 'node:util';
import { Checks } from './checks.mjs';
import { driveTools, envelopeOf, tools } from './tools.mjs';

const [helper] = process.argv.slice(2);
if (!helper) {
  console.error('usage: node inspector.mjs PATH-OF-VELMORA');
  process.exit(2);
}

const inspector = fileURLToPath(new URL(
  'node_modules/@modelcontextprotocol/inspector/clients/launcher/build/index.js', import.meta.url));
const run = promisify(execFile);
const checks = new Checks();

// What the Inspector prints for a method; throws when it finds fault or anything is said on standard error.
const ask = (era, ...args) => askIn({}, era, ...args);

async function askIn(environment, era, ...args) {
  const { stdout, stderr } = await run(process.execPath, [
    inspector, '--cli', helper, '-e', `XDG_RUNTIME_DIR=${process.env.XDG_RUNTIME_DIR}`,
    ...Object.entries(environment).flatMap(([key, value]) => ['-e', `${key}=${value}`]), '--protocol-era', era,
    '--format', 'json', ...args], { maxBuffer: 16 << 20, timeout: 60000 });
  assert.equal(stderr, '');
  return JSON.parse(stdout).result;
}

async function drive(era) {
  const name = `Inspector, ${era}`;
  await checks.check(`${name}: nine tools are listed, and the strict check finds nothing`, async () => {
    const listed = await ask(era, '--method', 'tools/list', '--strict');
    assert.deepEqual(listed.tools.map((tool) => tool.name), tools);
  });
  await driveTools(checks, name, (tool, args) =>
    ask(era, '--method', 'tools/call', '--tool-name', tool, '--tool-args-json', JSON.stringify(args)));
}

// The extended form: the strict check, and a command that is waited for.
async function driveExtended(era) {
  const name = `Inspector, ${era}, extended`;
  const extended = (...args) => askIn({ VELMORA_EXTENDED: '1' }, era, ...args);
  const call = async (tool, args) => envelopeOf(await extended(
    '--method', 'tools/call', '--tool-name', tool, '--tool-args-json', JSON.stringify(args))).data;
  await checks.check(`${name}: the strict check finds nothing`, async () => {
    const listed = await extended('--method', 'tools/list', '--strict');
    const read = listed.tools.find((tool) => tool.name === 'terminal_read_output');
    for (const argument of ['waitSeconds', 'until', 'waitText', 'after', 'format']) {
      assert.ok(argument in read.inputSchema.properties, argument);
    }
  });
  await checks.check(`${name}: a command and a read are waited for`, async () => {
    const { sessionId } = (await call('terminal_create_session', {})).session;
    const { completion } = await call('terminal_send_command', { sessionId, command: 'echo done', waitSeconds: 40 });
    assert.deepEqual([completion.state, completion.output], ['finished', 'done']);
    const first = await call('terminal_read_output', { sessionId, waitSeconds: 40 });
    assert.equal(first.met, true);
    const second = await call('terminal_read_output', { sessionId, after: first.cursor });
    assert.deepEqual([second.text, second.cursorLost], ['', false]);
  });
}

await Promise.all(['legacy', 'auto', 'modern'].map(drive));
await Promise.all(['legacy', 'auto', 'modern'].map(driveExtended));
checks.report();
