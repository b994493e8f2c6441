// Drives the helper through the official MCP SDK, as a client on the user's machine would.
//
//   node sdk-client.mjs PATH-OF-VELMORA running|absent
//
// XDG_RUNTIME_DIR says below which directory the helper looks for the application; the second argument says
// whether one is running there. Prints "N passed, N failed" and exits with 1 when something failed.
import assert from 'node:assert/strict';
import { Client } from '@modelcontextprotocol/client';
import { StdioClientTransport } from '@modelcontextprotocol/client/stdio';
import { Checks } from './checks.mjs';
import { driveTools, envelopeOf, neededArguments, tools } from './tools.mjs';

const [helper, application] = process.argv.slice(2);
if (!helper || !['running', 'absent'].includes(application)) {
  console.error('usage: node sdk-client.mjs PATH-OF-VELMORA running|absent');
  process.exit(2);
}

const modes = [
  { name: 'legacy', mode: 'legacy', revision: '2025-11-25' },
  { name: 'auto', mode: 'auto', revision: '2026-07-28' },
  { name: 'modern', mode: { pin: '2026-07-28' }, revision: '2026-07-28' },
];
const runtimeDirectory = process.env.XDG_RUNTIME_DIR;
const checks = new Checks();

// A client that has agreed with a helper of its own on a revision; `errors` collects what the helper writes to
// stderr, `faults` what the client made no sense of.
async function connected(mode, environment = {}) {
  const transport = new StdioClientTransport({
    command: helper,
    env: { ...environment, ...(runtimeDirectory ? { XDG_RUNTIME_DIR: runtimeDirectory } : {}) },
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

async function talk(name, client) {
  const check = (claim, body) => checks.check(`${name}: ${claim}`, body);
  await check('nine tools are listed', async () => {
    const listed = (await client.listTools()).tools;
    assert.deepEqual(listed.map((tool) => tool.name), tools);
    for (const tool of listed) assert.deepEqual([tool.inputSchema.type, tool.outputSchema.type], ['object', 'object']);
  });
  if (application === 'running') {
    await driveTools(checks, name, (tool, args) => client.callTool({ name: tool, arguments: args }));
    await check('ten calls at once are all answered', async () => {
      const results = await Promise.all(
        Array.from({ length: 10 }, () => client.callTool({ name: 'terminal_list_sessions', arguments: {} })));
      for (const result of results) assert.equal(envelopeOf(result).ok, true);
    });
    await check('a call is given up, and the next one works', async () => {
      const giveUp = new AbortController();
      const call = client.callTool({ name: 'terminal_status', arguments: {} }, { signal: giveUp.signal });
      giveUp.abort('No longer needed.');
      await assert.rejects(call);
      assert.equal(envelopeOf(await client.callTool({ name: 'terminal_status', arguments: {} })).ok, true);
    });
    await check('a refusal reaches the caller whole', async () => {
      const refused = envelopeOf(await client.callTool({ name: 'terminal_create_session', arguments: { kind: 'tab' } }));
      assert.equal(refused.error.code, 'INVALID_ARGUMENT');
    });
  } else {
    for (const tool of tools) {
      await check(`${tool} says that nothing runs`, async () => {
        const { error } = envelopeOf(await client.callTool({ name: tool, arguments: neededArguments(tool) }));
        assert.deepEqual([error.code, error.operation, error.retryable], ['BRIDGE_UNAVAILABLE', tool, true]);
      });
    }
  }
  await check('an unknown tool is an error of the protocol', () =>
    assert.rejects(client.callTool({ name: 'terminal_run', arguments: {} }), { code: -32602 }));
}

for (const { name, mode, revision } of modes) {
  await checks.check(`the ${name} handshake`, async () => {
    const { client, errors, faults } = await connected(mode);
    try {
      await checks.check(`${name}: the server says who it is and what it speaks`, () => {
        assert.equal(client.getNegotiatedProtocolVersion(), revision);
        assert.equal(client.getServerVersion().name, 'velmora');
        assert.equal(client.getServerVersion().title, 'Velmora');
        assert.ok(client.getServerCapabilities().tools);
        assert.ok(client.getInstructions().length > 0);
      });
      if (name === 'legacy') await checks.check('legacy: ping is answered', () => client.ping());
      await talk(name, client);
    } finally {
      await client.close();
    }
    await checks.check(`${name}: nothing but MCP was on standard output, and nothing on standard error`, () => {
      assert.deepEqual(faults, []);
      assert.equal(Buffer.concat(errors).toString(), '');
    });
  });
}

// The extended form: a command that is waited for, with progress, and a read of what is new.
async function useExtended(name, client) {
  const check = (claim, body) => checks.check(`${name}, extended: ${claim}`, body);
  const call = async (tool, args, options) => {
    const { ok, data, error } = envelopeOf(await client.callTool({ name: tool, arguments: args }, options));
    assert.ok(ok, error?.message);
    return data;
  };
  await client.listTools();
  const { sessionId } = (await call('terminal_create_session', {})).session;
  await check('a command is waited for, and its last line is told meanwhile', async () => {
    const lines = [];
    const { completion } = await call('terminal_send_command',
      { sessionId, command: 'echo begun; sleep 2.5; echo ended', waitSeconds: 40 },
      { onprogress: ({ message }) => lines.push(message) });
    assert.deepEqual([completion.state, completion.output], ['finished', 'begun\nended']);
    assert.ok(lines.includes('begun'), lines.join());
  });
  await check('a read waits, and brings only what is new', async () => {
    const { cursor } = await call('terminal_read_output', { sessionId });
    await call('terminal_send_command', { sessionId, command: 'echo new-$((40+2))' });
    const read = await call('terminal_read_output',
      { sessionId, after: cursor, waitSeconds: 40, until: 'text', waitText: 'new-42' });
    assert.deepEqual([read.met, read.cursorLost], [true, false]);
    assert.ok(!read.text.includes('begun') && read.text.includes('new-42'), read.text);
  });
  await check('exit is seen to close the window', async () => {
    const { completion } = await call('terminal_send_command', { sessionId, command: 'exit', waitSeconds: 40 });
    assert.equal(completion.state, 'closed');
  });
}

if (application === 'running') {
  for (const { name, mode } of modes) {
    await checks.check(`${name}, extended`, async () => {
      const { client, errors, faults } = await connected(mode, { VELMORA_EXTENDED: '1' });
      try {
        await useExtended(name, client);
      } finally {
        await client.close();
      }
      assert.deepEqual([faults, Buffer.concat(errors).toString()], [[], '']);
    });
  }
}

checks.report();
