"""What packaging/mcp/describe.py tells hosts and registries, by their published rules."""
import base64
import hashlib
import importlib.util
import json
import os
import pathlib
import re
import shlex
import subprocess
import tempfile
import tomllib
import unittest
import urllib.parse

ROOT = pathlib.Path(__file__).resolve().parents[2]
SPEC = importlib.util.spec_from_file_location("describe", ROOT / "packaging" / "mcp" / "describe.py")
describe = importlib.util.module_from_spec(SPEC)
SPEC.loader.exec_module(describe)
HELPER = os.environ["VELMORA_BIN"] + "/velmora"


class Manifest(unittest.TestCase):
    def setUp(self):
        self.manifest = describe.manifest(HELPER)

    def test_names_the_tools_that_the_helper_has(self):
        names = [tool["name"] for tool in self.manifest["tools"]]
        self.assertEqual(len(names), 9)
        self.assertEqual(names[0], "terminal_status")
        self.assertTrue(all(tool["description"] for tool in self.manifest["tools"]))

    def test_starts_the_program_in_the_bundle(self):
        server = self.manifest["server"]
        self.assertEqual(server["type"], "binary")
        self.assertEqual(server["mcp_config"]["command"], "${__dirname}/" + server["entry_point"])

    def test_has_what_the_format_requires(self):
        for member in ("manifest_version", "name", "version", "description", "author", "server"):
            self.assertTrue(self.manifest[member], member)


class Server(unittest.TestCase):
    def setUp(self):
        with tempfile.NamedTemporaryFile() as bundle:
            bundle.write(b"a bundle")
            bundle.flush()
            self.server = describe.server(bundle.name, "https://example.org/velmora.mcpb")
        self.package = self.server["packages"][0]

    def test_keeps_to_the_lengths_and_forms_of_the_registry(self):
        self.assertRegex(self.server["name"], r"^[a-zA-Z0-9.-]+/[a-zA-Z0-9._-]+$")
        self.assertLessEqual(len(self.server["name"]), 200)
        self.assertTrue(1 <= len(self.server["description"]) <= 100, len(self.server["description"]))
        self.assertTrue(1 <= len(self.server["title"]) <= 100)
        self.assertRegex(self.server["version"], r"^\d+\.\d+\.\d+$")

    def test_leads_to_the_page_that_the_packages_and_the_helper_name(self):
        homepage = re.search(r"^Homepage: (\S+)$", (ROOT / "debian" / "control").read_text(), re.MULTILINE)[1]
        self.assertEqual(self.server["websiteUrl"], homepage)
        self.assertEqual(describe.manifest(HELPER)["homepage"], homepage)
        self.assertIn(f'"{homepage}"', (ROOT / "VelmoraHelper" / "Mcp" / "ServerAnswers.cpp").read_text())

    def test_is_under_the_application_s_own_domain(self):
        self.assertEqual(self.server["name"].split("/")[0], "app.velmora")

    def test_names_the_bundle_by_its_address_and_checksum(self):
        self.assertEqual(self.package["registryType"], "mcpb")
        self.assertEqual(self.package["transport"], {"type": "stdio"})
        self.assertEqual(self.package["fileSha256"], hashlib.sha256(b"a bundle").hexdigest())
        self.assertTrue(re.match(r"https://\S+mcp\S*$", self.package["identifier"]), "the registry wants 'mcp' in it")
        self.assertEqual(self.package["version"], self.server["version"])


class Installing(unittest.TestCase):
    """The links and commands of docs/Clients.md say what `velmora config` does, with `velmora` found in the PATH."""
    section = (ROOT / "docs" / "Clients.md").read_text().split("## Links and commands")[1].split("\n## ")[0]

    def printed(self, client):
        return subprocess.run([HELPER, "config", client], capture_output=True, text=True, check=True).stdout

    def entry(self, client, read=json.loads):
        """The name and the entry, for a client whose configuration is one."""
        (servers,) = read(self.printed(client)).values()
        ((name, entry),) = servers.items()
        self.assertEqual(entry["command"], HELPER)
        return name, entry | {"command": "velmora"}

    def command(self, program):
        (line,) = re.findall(rf"^{program} .*$", self.section, re.MULTILINE)
        return shlex.split(line)[1:]

    def expect_as_in_vscode(self, text):
        given = json.loads(text)
        name, entry = self.entry("vscode")
        self.assertEqual({"type": "stdio"} | given, {"name": name} | entry)

    def test_by_the_link_of_cursor(self):
        (link,) = re.findall(r"`(cursor:[^`]+)`", self.section)
        address, _, query = link.partition("?")
        self.assertEqual(address, "cursor://anysphere.cursor-deeplink/mcp/install")
        (name,), (config,) = map(urllib.parse.parse_qs(query, strict_parsing=True).get, ("name", "config"))
        self.assertEqual((name, json.loads(base64.b64decode(config, validate=True))), self.entry("cursor"))

    def test_by_the_link_of_vscode(self):
        (link,) = re.findall(r"`(vscode:[^`]+)`", self.section)
        address, _, query = link.partition("?")
        self.assertEqual(address, "vscode:mcp/install")
        self.expect_as_in_vscode(urllib.parse.unquote(query))

    def test_by_the_command_of_vscode(self):
        option, text = self.command("code")
        self.assertEqual(option, "--add-mcp")
        self.expect_as_in_vscode(text)

    def test_by_the_command_of_claude_code(self):
        self.assertEqual(["claude", *self.command("claude")],
                         shlex.split(self.printed("claude-code").replace(HELPER, "velmora")))

    def test_by_the_command_of_codex(self):
        name, entry = self.entry("codex", lambda text: {"": tomllib.loads(text)["mcp_servers"]})
        self.assertEqual(self.command("codex"), ["mcp", "add", name, "--", entry.pop("command")])
        self.assertEqual(entry, {})

    def test_by_the_command_of_gemini(self):
        name, entry = self.entry("gemini-cli")
        self.assertEqual(self.command("gemini"), ["mcp", "add", "--scope", "user", name, entry.pop("command")])
        self.assertEqual(entry, {})

    def test_nothing_else_stands_there(self):
        block = re.search(r"```sh\n(.*?)```", self.section, re.DOTALL)[1]
        self.assertEqual([line.split()[0] for line in block.splitlines()], ["claude", "codex", "gemini", "code"])
        everywhere = "".join(file.read_text() for file in [ROOT / "README.md", *(ROOT / "docs").glob("*.md")])
        self.assertEqual(len(re.findall(r"\b(?:cursor:/|vscode:)", everywhere)), 2)


if __name__ == "__main__":
    unittest.main()
