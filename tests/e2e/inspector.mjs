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
import { driveTools, tools } from './tools.mjs';

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
async function ask(era, ...args) {
  const { stdout, stderr } = await run(process.execPath, [
    inspector, '--cli', helper, '-e', `XDG_RUNTIME_DIR=${process.env.XDG_RUNTIME_DIR}`, '--protocol-era', era,
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

await Promise.all(['legacy', 'auto', 'modern'].map(drive));
checks.report();
