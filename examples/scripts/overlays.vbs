' A picture that explains itself: power axis, legend, and the labels of the channels.
Set scope = CreateObject("kvBandscope.kvBandscope")
Set view = CreateObject("kvBandscope.View")
Set view.Scope = scope
Dim rows(2, 5)                          ' key, label, MHz, kHz, dBm, color of the box
rows(0, 0) = "TX15"
rows(0, 1) = "GMRS 15 output"
rows(0, 2) = 462.55
rows(0, 3) = 8
rows(0, 4) = 47
rows(0, 5) = RGB(31, 119, 180)
rows(1, 0) = "TX16"
rows(1, 1) = "GMRS 16 output"
rows(1, 2) = 462.575
rows(1, 3) = 8
rows(1, 4) = 40
rows(1, 5) = RGB(31, 119, 180)
rows(2, 0) = "TXIM1"
rows(2, 1) = "Intermod Product [third order product] 2A-B"
rows(2, 2) = 462.525
rows(2, 3) = 24
rows(2, 4) = -6
rows(2, 5) = RGB(214, 39, 40)
view.AddTXChannels rows
Set product = scope.GetTXbyKey("TXIM1")
product.nIMComps = 2                    ' the legend takes the order from the coefficients
product.nIMComp(0) = 2
product.nIMComp(1) = -1
scope.DisplayMinPwr = -20
scope.DisplayMaxPwr = 70                ' room for the labels above the boxes
view.ShowRange 462.48, 462.64
view.PowerAxis = True                   ' each of the three draws the display again
view.Legend = True
view.ChannelLabels = True
file = scope.DisplayToBMP(height, width, name)
WScript.Echo "Picture saved as " & file
If file <> "" Then WScript.Quit 42      ' 42 means success: after a script error the exit code may be 0
