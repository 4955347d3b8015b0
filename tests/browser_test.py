#!/usr/bin/python3
"""The whole way of a sign-in with a real browser, which a stand-in user makes press Allow, and that
no secret shows on the way. Arguments: the sandbox and velmora."""

import json
import os
import pathlib
import subprocess
import sys
import tempfile
import time
import urllib.parse
import urllib.request

SANDBOX, VELMORA = sys.argv[1:]
DRIVER = "http://127.0.0.1:{}/session"


def driver(url, data=None, method=None):
    """One WebDriver command (W3C WebDriver, section 6)."""
    body = None if data is None else json.dumps(data).encode()
    request = urllib.request.Request(url, body, {"Content-Type": "application/json"}, method=method)
    with urllib.request.urlopen(request, timeout=60) as answer:
        return json.load(answer)["value"]


def wait_for(what, seconds=30):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        value = what()
        if value:
            return value
        time.sleep(0.05)
    raise SystemExit("FAIL timed out")


def line_of(process):
    return process.stdout.readline().strip()


def browse(port, address):
    """Presses Allow, and returns the address and the text of the page it ends on."""
    flags = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
             "--disable-background-networking", "--disable-component-update", "--disable-sync"]
    capabilities = {"alwaysMatch": {"goog:chromeOptions": {"args": flags}}}
    session = driver(DRIVER.format(port), {"capabilities": capabilities})["sessionId"]
    base = DRIVER.format(port) + "/" + session
    driver(base + "/url", {"url": address})
    button = driver(base + "/element", {"using": "css selector", "value": "button.main"})
    driver(f"{base}/element/{next(iter(button.values()))}/click", {})
    look = {"script": "return [location.href, document.body.innerText]", "args": []}
    try:
        return wait_for(lambda: arrived(driver(base + "/execute/sync", look)))
    finally:
        driver(base, method="DELETE")


def arrived(page):
    """The page that the browser ended on, once it is no page of the provider's any more."""
    return page if "code=" in page[0] and page[1] else None


def sign_in(environment, sandbox, port):
    waiting = subprocess.Popen([VELMORA, "sign-in", "--print-address"], env=environment,
                               stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    address = line_of(waiting)
    command_line = pathlib.Path(f"/proc/{waiting.pid}/cmdline").read_text()
    end, text = browse(port, address)
    assert "You are signed in" in text and "Velmora sandbox" in text, text
    said = waiting.communicate(timeout=30)[0]
    code = urllib.parse.parse_qs(urllib.parse.urlsplit(end).query)["code"][0]
    assert waiting.returncode == 0, said
    assert said == "Signed in as Velmora sandbox.\n", said
    shown = address + command_line + said + text
    assert code not in shown and sandbox["clientSecret"] not in shown, "a secret was shown"
    return code


def main():
    with tempfile.TemporaryDirectory() as home:
        environment = dict(os.environ, HOME=home, LANGUAGE="en_US", SECRET_BACKEND="file",
                           SECRET_FILE_TEST_PATH=home + "/keyring", SECRET_FILE_TEST_PASSWORD="x",
                           DBUS_SESSION_BUS_ADDRESS=f"unix:path={home}/no-bus")
        for name in ["XDG_STATE_HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME"]:
            environment.pop(name, None)
        server = subprocess.Popen([SANDBOX], stdout=subprocess.PIPE, text=True)
        chromedriver = subprocess.Popen(["chromedriver", "--port=0"], env=environment,
                                        stdout=subprocess.PIPE, text=True)
        try:
            sandbox = json.loads(line_of(server))
            port = wait_for(lambda: port_from(line_of(chromedriver)))
            environment["VELMORA_TEST_API"] = sandbox["baseURL"]
            client = {"client_id": sandbox["clientID"], "client_secret": sandbox["clientSecret"],
                      "auth_uri": sandbox["authURL"], "token_uri": sandbox["tokenURL"]}
            file = pathlib.Path(home, "client.json")
            file.write_text(json.dumps({"installed": client}))
            subprocess.run([VELMORA, "client", file], env=environment, check=True,
                           stdout=subprocess.DEVNULL, timeout=30)
            code = sign_in(environment, sandbox, port)
            status = subprocess.run([VELMORA, "status"], env=environment, timeout=30,
                                    capture_output=True, text=True, check=True).stdout
            assert json.loads(status)["isSignedIn"], status
            file.unlink()
            for path in pathlib.Path(home).rglob("*"):
                own = path.is_file() and "velmora" in str(path.parent)
                bytes_ = path.read_bytes() if own else b""
                assert code.encode() not in bytes_ and b"1//0" not in bytes_, path
        finally:
            server.terminate()
            chromedriver.terminate()
    print("ok   signed in by pressing Allow, and nothing secret shows")


def port_from(line):
    words = line.replace(".", "").split()
    return int(words[-1]) if "started successfully on port" in line else None


main()
