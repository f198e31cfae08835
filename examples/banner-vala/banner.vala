// A GTK application with an ad banner beneath its content: banner_vala [AD_NETWORK_URL [AD_UNIT]].
//
//     valac --pkg valdren-gobject-1 banner.vala -o banner_vala
//
// It tells on standard output what happens to the ad.

unowned string ad_unit;

void say (string text) {
    stdout.printf ("%s\n", text);
    stdout.flush ();
}

void activate (Application application) {
    var window = new Gtk.ApplicationWindow ((Gtk.Application) application) {
        title = "Banner example", default_width = 360, default_height = 480
    };
    var box = new Gtk.Box (Gtk.Orientation.VERTICAL, 0);
    box.append (new Gtk.Label ("The application's own content") { vexpand = true });
    window.child = box;

    var banner = new Valdren.Banner (ad_unit);
    box.append (banner);
    banner.ad_received.connect (() => say ("ad received"));
    banner.ad_failed.connect ((error) => say (error.message));
    banner.will_present_screen.connect (() => say ("screen presented"));
    banner.did_dismiss_screen.connect (() => say ("screen dismissed"));
    banner.load_request (null);

    window.present ();
}

int main (string[] args) {
    if (args.length > 1) Valdren.set_ad_network (args[1]);
    ad_unit = args.length > 2 ? args[2] : "example";
    var application = new Gtk.Application ("com.valdren.example.vala", ApplicationFlags.FLAGS_NONE);
    application.activate.connect (activate);
    return application.run ({ args[0] });
}
