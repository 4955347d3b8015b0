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
patience = float(os.environ.get('patience', 10)) / 10  # on a machine that is busy


def tr(key):
    return re.sub(r'_(\w)', r'\1', _(key))


def check(what, condition, seconds=8):
    """Waits for a condition, a function or a key on the screen."""
    global failures
    end = time.time() + seconds * patience
    while not (seen := condition()) and time.time() < end:
        time.sleep(0.05)
    print('ok  ' if seen else 'FAIL', what, flush=True)
    if not seen and 'SHOTS' in os.environ:
        run('import', '-window', 'root', os.environ['SHOTS'] + '/' + what.replace(' ', '_') + '.png')
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


# What newer releases of at-spi or GTK call a role.
RENAMED = {'button': 'push button', 'switch': 'check box'}


def role_of(node):
    role = node.get_role_name()
    return RENAMED.get(role, role)


def find(name, role=None):
    for node in controls():
        try:
            # A dialog's buttons have their names twice, first with the mnemonic.
            if node.get_name().endswith(name) and role in (None, role_of(node)):
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
        button.do_action(0)


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


def is_signed_in():
    return find(tr('_Refresh Now'), 'push button')


def sign_in(sandbox):
    press('_Sign In')
    check('the browser is sent to the provider', lambda: sandbox.address['authURL'] in
          text_of(work + '/visited'))
    check('the overview is shown', is_signed_in)
    check('the first figures are there', shows(tr('Refreshed: %s').split('%')[0]))
    check('the token is stored', lambda: stored('google.refresh_token'))


def type_text(text):
    subprocess.run(['xdotool', 'type', '--delay', '30', text])


def type_goal(title, text):
    keys('alt+3')
    focus(title, 'text')
    keys('ctrl+a')
    type_text(text)


def change_goals():
    type_goal('For each day', '23.5')
    check('a goal is stored once it has come to rest', lambda: '"daily":23.5' in
          stored('objectives'))
    type_goal('For each month', '0')
    check('a goal that is none says why', shows(_('A goal is more than zero.')))
    type_goal('For each month', '12.3456')
    keys('Tab', 'shift+Tab', 'Tab')
    check('a goal is stored as it was typed', lambda: '"monthly":12.3456' in stored('objectives'))


def look_at_the_days():
    subprocess.run(['xdotool', 'mousemove', '5', '5'])  # else one day tells its figures
    keys('alt+1')
    check('the days are charted', shows(_('%s a day on average').split('%s')[-1]), 15)
    press('Months', None)
    check('... and the months', shows(_('%s a month on average').split('%s')[-1]))


def focus(key, role):
    """Goes to a control by keyboard alone."""
    node = check('there is ' + key, lambda: find(tr(key), role))
    for _attempt in range(60):
        if not node or state(node, Atspi.StateType.FOCUSED):
            return
        keys('Tab')
    check('the keyboard leads to ' + key, lambda: state(node, Atspi.StateType.FOCUSED), 1)


def placement():
    return json.loads(text_of(work + '/config/velmora-desktop/placement.json') or '{}')


def on_bus(name='com.brenvik.velmora.Desktop'):
    return run('gdbus', 'call', '--session', '--dest', 'org.freedesktop.DBus', '--object-path', '/',
               '--method', 'org.freedesktop.DBus.NameHasOwner', name) == '(true,)'


def is_on(name):
    node = find(tr(name), 'check box')
    return node and state(node, Atspi.StateType.CHECKED)


def use_the_desktop():
    autostart = work + '/config/autostart/velmora-desktop.desktop'
    keys('alt+2')
    focus('Size', 'combo box')
    keys('space')
    time.sleep(0.5)
    keys('Down', 'Return')
    check('a size is kept while the widget is off', lambda: placement().get('family') == 'medium')
    press('Show the widget', 'check box')
    check('the widget is started', on_bus)
    check('... as it was chosen', lambda: placement().get('family') == 'medium', 0)
    press('Start at login', 'check box')
    check('it starts at login', lambda: 'TryExec=' in text_of(autostart))
    press('Hide the amounts', 'check box')
    check('the amounts are hidden at once', lambda: placement().get('amounts') == 'hide')
    run(root + '/bin/velmora-desktop', '--family=large', '--amounts=show')
    check('a choice made elsewhere is shown', shows(tr('Large')))
    check('... every one', lambda: not is_on('Hide the amounts'))
    press('Show the widget', 'check box')
    check('the widget is ended', lambda: not on_bus())
    press('Start at login', 'check box')
    check('... and does not come back', lambda: not os.path.exists(autostart))


def host_that_fails():
    os.rename(root + '/bin/velmora-desktop', root + '/bin/away')
    with open(root + '/bin/velmora-desktop', 'w') as program:
        print('#!/bin/sh\necho "no screen of mine" >&2\nexit 3', file=program)
    os.chmod(root + '/bin/velmora-desktop', 0o755)
    press('Show the widget', 'check box')
    check('a host that fails is said', shows(_('The widget could not be shown on this desktop')))
    press('_Details')
    check('... with its own reason', shows('no screen of mine'))
    check('... and the switch is off again', lambda: not is_on('Show the widget'))
    os.rename(root + '/bin/away', root + '/bin/velmora-desktop')


def fail_and_sign_out(sandbox):
    keys('alt+1')
    sandbox.process.send_signal(signal.SIGSTOP)
    keys('F5')
    check('a refresh that fails says so', shows(_('Google does not answer')), 40)
    sandbox.process.send_signal(signal.SIGCONT)
    press('_Try Again')
    check('one that works takes it back', lacks(_('Google does not answer')))
    keys('alt+3')
    press('Sign _Out…')
    press('Sign _Out')
    check('the first page is back', lambda: find(tr('_Sign In'), 'push button'))
    check('the token is gone', lambda: not stored('google.refresh_token'))
    check('the goals are not', lambda: stored('objectives'))
    check('the figures are gone', lambda: '"snapshot":null' in run(programs + '/velmora', 'status'))


def cancel():
    """The browser is opened and never answers."""
    open(work + '/absent', 'w').close()
    window = start()
    press('_Sign In')
    press('Copy _Address')
    check('the address can be copied', shows(tr('The address is copied.')))
    press('_Cancel')
    check('it is cancelled at once', lambda: find(tr('_Sign In'), 'push button'), 2)
    keys('Return')
    check('it waits again', lambda: find(tr('_Cancel'), 'push button'))
    keys('Return')
    time.sleep(0.5)
    check('a second Enter cancels nothing', lambda: find(tr('_Cancel'), 'push button'), 0)
    close(window)
    os.remove(work + '/absent')
    check('nothing was stored', lambda: not stored('google.refresh_token'), 0)


def by_keyboard(sandbox):
    """The whole way without a pointer."""
    os.remove(work + '/data/velmora-widget/client_secret.json')
    window = start()
    check('the first page is shown', lambda: find(tr('_Sign In'), 'push button'))
    keys('ctrl+o')
    check('the file chooser opens', shows(tr('Choose a client file')))
    time.sleep(0.5)
    keys('ctrl+l')
    subprocess.run(['xdotool', 'type', '--delay', '20', sandbox.client_file()])
    keys('shift+End', 'Delete', 'Return')  # without what the chooser adds while it is typed
    check('the file is taken', shows(sandbox.address['clientID']))
    focus('_Sign In', 'push button')
    keys('Return')
    check('the overview is shown', is_signed_in)
    type_goal('For each month', '777')
    keys('ctrl+question')
    check('the shortcuts are shown', shows(tr('Cancel the sign-in')))
    keys('Escape')
    focus('Sign _Out…', 'push button')
    keys('Return')
    check('it asks once more', shows(tr('Sign Out?')))
    keys('Escape')
    type_goal('For each day', '31')
    close(window)
    check('what was typed last is stored', lambda: '"daily":31' in stored('objectives'))
    check('... and what was typed before', lambda: '"monthly":777' in stored('objectives'), 0)
    check('and nobody was signed out', lambda: stored('google.refresh_token'), 0)


def closing_in_other_ways():
    """By the window manager, and at the end of the session."""
    for amount, close_it in ('33', lambda: keys('alt+F4')), ('34', lambda: window.terminate()):
        window = start()
        check('the overview is shown', is_signed_in)
        type_goal('For each day', amount)
        close_it()
        ends('closing the window ends it', window)
        check('what was typed is stored', lambda: '"daily":' + amount in stored('objectives'))


def without_a_store():
    """The state folder is none: figures are shown, though not kept, and not asked for again."""
    os.rename(work + '/state', work + '/state-away')
    open(work + '/state', 'w').close()
    window = start()
    check('it is said that figures are not kept', shows(_('The figures are not kept')), 15)
    check('they are shown', shows(tr('Refreshed: %s').split('%')[0]), 0)
    busy = 0
    for _sample in range(30):
        busy += 0 if state(is_signed_in(), Atspi.StateType.SENSITIVE) else 1
        time.sleep(0.1)
    check('and not fetched again and again', lambda: busy < 5, 0)
    close(window)
    os.remove(work + '/state')
    os.rename(work + '/state-away', work + '/state')


def without_programs():
    """The host away, the widget program hanging."""
    os.rename(root + '/bin/velmora-desktop', root + '/bin/away')
    os.remove(root + '/bin/velmora-widget')
    with open(root + '/bin/velmora-widget', 'w') as program:
        print('#!/bin/sh\necho $$ >>$WORK/hanging\nexec sleep 1000', file=program)
    os.chmod(root + '/bin/velmora-widget', 0o755)
    window = start()
    check('the overview is shown', is_signed_in)
    keys('alt+2')
    check('a missing host is said', shows(tr('The program velmora-desktop is not installed.')))
    check('a widget program hangs', lambda: text_of(work + '/hanging'))
    type_goal('For each day', '32')
    check('the window goes on', lambda: '"daily":32' in stored('objectives'))
    ends('a second start only brings it to the front', start())
    close(window)
    check('the hanging programs are taken along', lambda: not any(
        os.path.exists('/proc/' + process) for process in text_of(work + '/hanging').split()))


def asked():
    return run('xdotool', 'search', '--onlyvisible', '--class', 'prompter')


def asks_for_keyring(button, *answer, meanwhile=None):
    prompter = subprocess.Popen(['/usr/libexec/gcr-prompter'], stderr=subprocess.DEVNULL)
    atexit.register(prompter.kill)
    check('there is a prompter', lambda: on_bus('org.gnome.keyring.SystemPrompter'))
    press(button)
    check('the user is asked', asked)
    if meanwhile:
        meanwhile()
    time.sleep(0.5)
    keys(*answer)
    check('the prompt goes', lambda: not asked())


def locked_keyring():
    """A real keyring, which the user is asked to unlock."""
    lock = ['--session', '--dest', 'org.freedesktop.secrets', '--object-path',
            '/org/freedesktop/secrets', '--method', 'org.freedesktop.Secret.Service.Lock']
    del os.environ['SECRET_BACKEND']
    daemon = subprocess.Popen(['gnome-keyring-daemon', '--foreground', '--unlock',
                               '--components=secrets'], stdin=subprocess.PIPE,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    atexit.register(daemon.kill)
    daemon.stdin.write(b'password')
    daemon.stdin.close()
    token = ['service', 'com.brenvik.velmora', 'account', 'google.refresh_token', 'access-group',
             'Q7M2K9D4XW.com.brenvik.velmora.shared']
    check('there is a keyring', lambda: on_bus('org.freedesktop.secrets'))
    check('... with a token', lambda: subprocess.run(
        ['secret-tool', 'store', '--label=Velmora', *token], input='token', text=True,
        capture_output=True).returncode == 0)
    run('gdbus', 'call', *lock, "['/org/freedesktop/secrets/aliases/default']")
    window = start()
    asks_for_keyring('_Unlock…', 'Escape')
    check('saying no leaves it locked', lambda: find(tr('_Unlock…')), 0)
    asks_for_keyring('_Unlock…', *'password', 'Return')
    check('unlocked, it goes on', is_signed_in)
    keys('alt+3')
    press('Sign _Out…')
    press('Sign _Out')
    check('the first page is back', lambda: find(tr('_Sign In'), 'push button'))
    run('gdbus', 'call', *lock, "['/org/freedesktop/secrets/aliases/default']")
    open(work + '/visited', 'w').close()
    asks_for_keyring('_Sign In', *'password', 'Return', meanwhile=lambda: press('_Cancel'))
    check('cancelled while it was asked for, it stays so',
          lambda: find(tr('_Sign In'), 'push button'))
    time.sleep(1)
    check('... and no browser opens', lambda: not text_of(work + '/visited'), 0)
    close(window)


def main():
    os.environ['VELMORA_TEST_TIMEOUT_MS'] = '8000'
    sandbox = Sandbox('--consent', 'allow')
    window = first_start()
    dropped('the right one is taken', sandbox.client_file(), shows(sandbox.address['clientID']))
    sign_in(sandbox)
    change_goals()
    look_at_the_days()
    use_the_desktop()
    host_that_fails()
    fail_and_sign_out(sandbox)
    close(window)
    cancel()
    by_keyboard(sandbox)
    closing_in_other_ways()
    without_a_store()
    without_programs()
    locked_keyring()


main()
sys.exit(failures > 0)
