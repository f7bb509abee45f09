// A product with its components from JScript: properties with an index are set and read with parentheses.
var scope = new ActiveXObject("kvBandscope.kvBandscope");
var product = new ActiveXObject("kvBandscope.FreqSlot");
product.sKey = "TXIM1";
product.sLabel = "Intermod Product [third order product] 2A-B";
product.dFreq = 462.6; // MHz
product.dBW = 24; // kHz: the box is twice as wide
product.dPwrDBM = 10; // dBm
product.lColor = 0x5aa0e3; // blue, green, red from left to right
product.nIMComps = 2; // set the number of components first
product.nIMComp(0) = 2;
product.dIMCompFreq(0) = 462.575;
product.sIMCompLabel(0) = "Repeater 16";
product.nIMComp(1) = -1;
product.dIMCompFreq(1) = 462.55;
product.sIMCompLabel(1) = "Repeater 15";
scope.AddTXChnl(product);
scope.DisplayMaxPwr = 40; // dBm
scope.FreqEndBuffer = 0; // MHz
scope.DrawByRange(462.51, 462.71); // MHz
var file = scope.DisplayToBMP(0, 0, "");
WScript.Echo(product.nIMComp(0) + " x " + product.dIMCompFreq(0) + " MHz, " + product.sIMCompLabel(0));
WScript.Echo("Picture saved as " + file);
WScript.Quit(file !== "" && product.nIMComp(1) == -1 ? 42 : 1); // 42 means success
