' An intermodulation product with its components: 2 x 462.575 - 462.550 = 462.600 MHz.
Set scope = CreateObject("kvBandscope.kvBandscope")
Set product = CreateObject("kvBandscope.FreqSlot")
product.sKey = "TXIM1"
product.sLabel = "Intermod Product [third order product] 2A-B"
product.dFreq = 462.6
product.dBW = 12.5
product.dPwrDBM = -5
product.lColor = RGB(227, 160, 90)
product.nIMComps = 2                    ' first the number, then the components
product.nIMComp(0) = 2
product.dIMCompFreq(0) = 462.575
product.sIMCompLabel(0) = "Repeater 16"
product.nIMComp(1) = -1
product.dIMCompFreq(1) = 462.55
product.sIMCompLabel(1) = "Repeater 15"
scope.AddTXChnl product
scope.DisplayMinPwr = -20               ' the product is weaker than the 0 dBm that the display begins with
scope.DisplayMaxPwr = 40
scope.DrawByRange 462.5, 462.7
file = scope.DisplayToBMP(height, width, name)
WScript.Echo "Picture saved as " & file
If file <> "" And product.bDrawn Then WScript.Quit 42
