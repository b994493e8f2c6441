// Drives the helper through the official MCP SDK, as a client on the user's machine would.
//
//   node sdk-client.mjs PATH-OF-VELMORA running|absent
//
// XDG_RUNTIME_DIR says below which directory the helper looks for the application; the second argument says
// whether one is running there. Prints "N passed, N failed" and exits with 1 when something failed.
import assert from 'node:assert/strict';
import { Client } from '@modelcontextprotocol/client';
import { StdioClientTransport } from '@modelcontextprotocol/client/stdio';

const [helper, application] = process.argv.slice(2);
if (!helper || !['running', 'absent'].includes(application)) {
  console.error('usage: node sdk-client.mjs PATH-OF-VELMORA running|absent');
  process.exit(2);
}

const tools = [
  'terminal_status', 'terminal_list_sessions', 'terminal_get_active_session', 'terminal_create_session',
  'terminal_send_command', 'terminal_send_key', 'terminal_read_output', 'terminal_capture_screen',
  'terminal_focus_session',
];
const runtimeDirectory = process.env.XDG_RUNTIME_DIR;

let passed = 0;
let failed = 0;
async function check(claim, body) {
  try {
    await body();
    ++passed;
  } catch (error) {
    ++failed;
    console.error(`FAIL ${claim}: ${error.message}`);
  }
}

// A client that has shaken hands with a helper of its own; `errors` collects what the helper writes to stderr.
async function connected(mode) {
  const transport = new StdioClientTransport({
    command: helper,
    env: runtimeDirectory ? { XDG_RUNTIME_DIR: runtimeDirectory } : {},
    stderr: 'pipe',
  });
  const errors = [];
  transport.stderr.on('data', (bytes) => errors.push(bytes));
  const client = new Client({ name: 'velmora-e2e', version: '1.0.0' }, { versionNegotiation: { mode } });
  const faults = [];
  client.onerror = (error) => faults.push(error);
  await client.connect(transport);
  return { client, errors, faults };
}

for (const mode of ['legacy', 'auto']) {
  await check(`the ${mode} handshake`, async () => {
    const { client, errors, faults } = await connected(mode);
    try {
      await check(`${mode}: the server says who it is`, () => {
        assert.equal(client.getServerVersion().name, 'velmora');
        assert.equal(client.getServerVersion().title, 'Velmora');
        assert.ok(client.getServerCapabilities().tools);
        assert.ok(client.getInstructions().length > 0);
      });
      await check(`${mode}: nine tools are listed`, async () => {
        const listed = (await client.listTools()).tools;
        assert.deepEqual(listed.map((tool) => tool.name), tools);
        for (const tool of listed) assert.equal(tool.inputSchema.type, 'object');
      });
      await check(`${mode}: terminal_status is answered`, async () => {
        const result = await client.callTool({ name: 'terminal_status', arguments: {} });
        const envelope = result.structuredContent;
        assert.deepEqual(JSON.parse(result.content[0].text), envelope);
        assert.equal(result.isError, !envelope.ok);
        if (application === 'running') {
          assert.equal(envelope.ok, true);
          assert.equal(typeof envelope.data.status.sessionCount, 'number');
        } else {
          assert.equal(envelope.error.code, 'BRIDGE_UNAVAILABLE');
          assert.equal(envelope.error.operation, 'terminal_status');
          assert.equal(envelope.error.retryable, true);
        }
      });
      await check(`${mode}: ping is answered`, () => client.ping());
      await check(`${mode}: an unknown tool is an error of the protocol`, () =>
        assert.rejects(client.callTool({ name: 'terminal_run', arguments: {} }), { code: -32602 }));
    } finally {
      await client.close();
    }
    await check(`${mode}: nothing but MCP was on standard output, and nothing on standard error`, () => {
      assert.deepEqual(faults, []);
      assert.equal(Buffer.concat(errors).toString(), '');
    });
  });
}

console.log(`${passed} passed, ${failed} failed`);
process.exit(failed === 0 ? 0 : 1);
