"""Walks the window from the first start to the sign-out, and through what can go wrong."""
import atexit
import gettext
import glob
import json
import os
import re
import signal
import subprocess
import sys
import time

import gi

gi.require_version('Atspi', '2.0')
from gi.repository import Atspi  # noqa: E402

work, programs = os.environ['WORK'], os.environ['BIN']
root = work + '/root'
_ = gettext.translation('velmora-widget', root + '/share/velmora-widget/locale',
                        [os.environ['LANGUAGE']], fallback=True).gettext
failures = 0


def tr(key):
    return re.sub(r'_(\w)', r'\1', _(key))


def check(what, condition, seconds=8):
    """Waits for a condition, a function or a key on the screen."""
    global failures
    end = time.time() + seconds
    while not (seen := condition()) and time.time() < end:
        time.sleep(0.05)
    print('ok  ' if seen else 'FAIL', what, flush=True)
    if not seen and 'SHOTS' in os.environ: subprocess.run(['import','-silent','-window','root',os.environ['SHOTS']+'/fail-'+what.replace(' ','_').replace('/','')+'.png'])
    failures += 0 if seen else 1
    return seen


def nodes(node):
    try:
        yield node
        for i in range(node.get_child_count()):
            if child := node.get_child_at_index(i):
                yield from nodes(child)
    except Exception:  # it went while it was read
        return


def controls():
    desktop = Atspi.get_desktop(0)
    for i in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(i)
        if application and application.get_name() == 'com.brenvik.velmora':
            yield from nodes(application)


def state(node, flag):
    return node.get_state_set().contains(flag)


def find(name, role=None):
    for node in controls():
        try:
            if node.get_name() == name and role in (None, node.get_role_name()):
                return node
        except Exception:
            pass


def shows(part):
    """Whether a text with this part is on the page that is shown."""
    return lambda: any(part in (node.get_name() or '') for node in controls())


def lacks(part):
    return lambda: not shows(part)()


def press(key, role='push button'):
    name = tr(key)
    button = check('there is ' + key, lambda: (node := find(name, role)) and
                   state(node, Atspi.StateType.SENSITIVE) and node)
    if button:
        button.get_action_iface().do_action(0)


def run(*command):
    return subprocess.run(command, capture_output=True, text=True).stdout.strip()


def keys(*names):
    subprocess.run(['xdotool', 'key', '--delay', '60', *names])


def stored(account):
    return run('secret-tool', 'lookup', 'service', 'com.brenvik.velmora', 'account', account)


def text_of(file):
    return open(file).read() if os.path.exists(file) else ''


class Sandbox:
    def __init__(self, *options):
        self.process = subprocess.Popen([programs + '/velmora-sandbox', *options],
                                        stdout=subprocess.PIPE, text=True)
        atexit.register(self.process.kill)
        self.address = json.loads(self.process.stdout.readline())
        os.environ['VELMORA_TEST_API'] = self.address['baseURL']
        os.environ['VELMORA_TEST_REVOCATION'] = self.address['revokeURL']

    def client_file(self):
        name = work + '/client.json'
        with open(name, 'w') as stream:
            json.dump({'installed': {
                'client_id': self.address['clientID'],
                'client_secret': self.address['clientSecret'],
                'auth_uri': self.address['authURL'], 'token_uri': self.address['tokenURL']}},
                stream)
        return name


def start():
    window = subprocess.Popen([root + '/libexec/velmora/velmora-window'],
                              stderr=open(work + '/errors', 'a'))
    atexit.register(window.kill)
    return window


def ends(what, process, seconds=10):
    check(what, lambda: process.poll() is not None, seconds)
    check('... and cleanly', lambda: process.returncode == 0, 0)


def close(window):
    keys('ctrl+w')
    ends('closing the window ends it', window)


def choose_file(file):
    keys('ctrl+o')
    check('the file chooser opens', lambda: find(tr('Choose a client file')))
    time.sleep(0.5)
    keys('ctrl+l')
    subprocess.run(['xdotool', 'type', '--delay', '20', file])
    keys('Return')


def place(title, x, y):
    def found():
        return run('xdotool', 'search', '--onlyvisible', '--name', '^' + title + '$')
    if check('there is a window ' + title, found):
        subprocess.run(['xdotool', 'windowmove', '--sync', found().split()[0], str(x), str(y)])


def drop(file):
    source = subprocess.Popen(['/usr/bin/python3', os.path.dirname(__file__) + '/drag_source.py',
                               file])
    place('Source', 0, 0)
    time.sleep(0.5)
    mouse = ['mousemove', '60', '80', 'mousedown', '1']
    for step in range(0, 61, 4):
        mouse += ['mousemove', str(60 + 9 * step), str(80 + 6 * step), 'sleep', '0.03']
    subprocess.run(['xdotool', *mouse]); subprocess.run(['xdotool','sleep', '0.3', 'mouseup', '1'])
    return source


def dropped(what, file, condition):
    source = drop(file)
    check(what, condition)
    source.kill()
    source.wait()


def first_start():
    window = start()
    place('Velmora', 350, 20)
    sign_in = check('the first page is shown', lambda: find(tr('_Sign In'), 'push button'))
    check('nobody can sign in without a client file',
          lambda: not state(sign_in, Atspi.StateType.SENSITIVE), 0)
    with open(work + '/wrong.json', 'w') as stream:
        stream.write('{"type": "service_account", "private_key": "x"}')
    refused = _('This is the key of a service account, which AdSense does not accept.')
    dropped('a wrong file is refused', work + '/wrong.json', shows(refused))
    return window


def sign_in(sandbox):
    press('_Sign In')
    check('the browser is sent to the provider', lambda: sandbox.address['authURL'] in
          text_of(work + '/visited'))
    check('the overview is shown', lambda: find(tr('Sign _Out…'), 'push button'))
    check('the first figures are there', shows(tr('Refreshed: %s').split('%')[0]))
    check('the token is stored', lambda: stored('google.refresh_token'))


def change_goal():
    goal = check('there is a goal', lambda: find(tr('For each day'), 'spin button'))
    goal.get_value_iface().set_current_value(23.5)
    check('a goal is stored', lambda: '"daily":23.5' in stored('objectives'))


def choose(row, value):
    """Opens a list to choose from and presses one of its lines."""
    combo = check('there is ' + row, lambda: find(tr(row), 'combo box'))
    combo.get_component_iface().grab_focus()
    keys('space')
    time.sleep(0.5)
    for node in controls():
        if node.get_name() == tr(value): print(node.get_role_name(), node.get_parent().get_role_name(), node.get_n_actions())
    keys('Down', 'Return')


def main():
    sandbox = Sandbox('--consent', 'allow')
    window = first_start()
    dropped('the right one is taken', sandbox.client_file(), shows(sandbox.address['clientID']))
    sign_in(sandbox)
    change_goal()
    choose('Size', 'Medium')
    if 'SHOTS' in os.environ: subprocess.run(['import','-silent','-window','root',os.environ['SHOTS']+'/size.png'])
    for node in controls(): print(node.get_role_name(), repr(node.get_name()))
    close(window)
    sandbox.process.kill()


main()
sys.exit(failures > 0)
