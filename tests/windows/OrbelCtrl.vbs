' Run as: cscript //nologo OrbelCtrl.vbs. The script's last line is "SCRIPT OK" when the control
' answered; cscript under Wine ends with 0 even when the script dies, so the line is what counts.
Dim control, version, spectrum(35), code
Set control = CreateObject("Halvorn.OrbelCtrl.1")
version = control.GetDeviceInfo("Version")
WScript.Echo "Version: " & version
' A script array is an array of VARIANTs, which the control refuses by its rule.
code = control.GetSpectrum(spectrum, 0)
WScript.Echo "GetSpectrum of a script array: " & code
If version = "1.0.5" And code = 10 Then WScript.Echo "SCRIPT OK"
