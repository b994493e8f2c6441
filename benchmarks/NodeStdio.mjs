// A server of a few lines in Node, to give the helper's numbers a scale: it answers every request, and knows nothing.
import { createInterface } from 'node:readline';

for await (const line of createInterface({ input: process.stdin })) {
  const { id } = JSON.parse(line);
  process.stdout.write(JSON.stringify({ jsonrpc: '2.0', id, result: {} }) + '\n');
}
