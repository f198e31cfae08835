#!/usr/bin/python3
"""A GTK application with an ad banner beneath its content: banner.py [AD_NETWORK_URL [AD_UNIT]].

The window is in banner.ui. It tells on standard output what happens to the ad.
"""
import pathlib
import sys

import gi

gi.require_version("Gtk", "4.0")
gi.require_version("Valdren", "1")
from gi.repository import Gtk, Valdren


def say(text):
    return lambda *_: print(text, flush=True)


def activate(application):
    # A builder knows the classes that have been used before.
    Valdren.Banner.__gtype__
    builder = Gtk.Builder.new_from_file(str(pathlib.Path(__file__).with_name("banner.ui")))
    window = builder.get_object("window")
    application.add_window(window)
    banner = builder.get_object("banner")
    if len(sys.argv) > 2:
        banner.props.ad_unit_id = sys.argv[2]
    banner.connect("ad-received", say("ad received"))
    banner.connect("ad-failed", lambda _, error: print(error.message, flush=True))
    banner.connect("will-present-screen", say("screen presented"))
    banner.connect("did-dismiss-screen", say("screen dismissed"))
    banner.load_request(None)
    window.present()


if len(sys.argv) > 1:
    Valdren.set_ad_network(sys.argv[1])
application = Gtk.Application(application_id="com.valdren.example.python")
application.connect("activate", activate)
sys.exit(application.run(None))
