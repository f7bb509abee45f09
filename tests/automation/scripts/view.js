// The interface _BandscopeView from a language without object assignments and with arrays of its own.
var spectrum = new ActiveXObject("kvBandscope.kvBandscope");
var view = new ActiveXObject("kvBandscope.View");
view.Scope = spectrum;
var slot = new ActiveXObject("kvBandscope.FreqSlot");
slot.sKey = "TX1";
slot.dFreq = 450;
spectrum.AddTXChnl(slot);
var hits = new VBArray(view.HitTest(450)).toArray();
WScript.Echo("hits " + hits.length + " " + hits[0].sKey);
view.ShowRange(440, 460);
WScript.Echo("range " + spectrum.DisplayMinFreq + " " + spectrum.DisplayMaxFreq);
try {
    view.ShowRange(460, 440);
} catch (error) {
    WScript.Echo("wrong range " + (error.number & 0xFFFF));
}
view.Scope = null;
try {
    view.PanBy(1);
} catch (error) {
    WScript.Echo("released " + (error.number & 0xFFFF));
    WScript.Quit(42);
}
WScript.Quit(1);
