<?xml version="1.0"?>
<!--
  A replace of IPv4 addresses and MTUs, from OpenConfig to the native models: what somebody would write
  who has no plug-in. It knows nothing of deletes, of the addresses that a device has, and of faults in
  a request.
-->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
                xmlns:if="http://openconfig.net/yang/interfaces"
                xmlns:ip="http://openconfig.net/yang/interfaces/ip"
                xmlns:nc="urn:ietf:params:xml:ns:netconf:base:1.0"
                exclude-result-prefixes="if ip">
  <xsl:output omit-xml-declaration="yes"/>

  <!-- The netmask of each prefix length, between its number and a semicolon. -->
  <xsl:variable name="netmasks" select="translate($table, ' &#10;', '')"/>
  <xsl:variable name="table">
    ;
    0=0.0.0.0;1=128.0.0.0;2=192.0.0.0;3=224.0.0.0;4=240.0.0.0;5=248.0.0.0;6=252.0.0.0;
    7=254.0.0.0;8=255.0.0.0;9=255.128.0.0;10=255.192.0.0;11=255.224.0.0;12=255.240.0.0;
    13=255.248.0.0;14=255.252.0.0;15=255.254.0.0;16=255.255.0.0;17=255.255.128.0;
    18=255.255.192.0;19=255.255.224.0;20=255.255.240.0;21=255.255.248.0;22=255.255.252.0;
    23=255.255.254.0;24=255.255.255.0;25=255.255.255.128;26=255.255.255.192;
    27=255.255.255.224;28=255.255.255.240;29=255.255.255.248;30=255.255.255.252;
    31=255.255.255.254;32=255.255.255.255;
  </xsl:variable>

  <xsl:template match="/">
    <interface-configurations xmlns="urn:halvane:yang:Halvane-Ombrix-ifmgr-cfg">
      <xsl:apply-templates select="if:interfaces/if:interface/if:subinterfaces/if:subinterface"/>
    </interface-configurations>
  </xsl:template>

  <xsl:template match="if:subinterface">
    <interface-configuration xmlns="urn:halvane:yang:Halvane-Ombrix-ifmgr-cfg">
      <active>act</active>
      <interface-name>
        <xsl:value-of select="../../if:name"/>
        <xsl:if test="if:index &gt; 0">
          <xsl:value-of select="concat('.', if:index)"/>
        </xsl:if>
      </interface-name>
      <xsl:apply-templates select="ip:ipv4"/>
    </interface-configuration>
  </xsl:template>

  <xsl:template match="ip:ipv4">
    <ipv4-network xmlns="urn:halvane:yang:Halvane-Ombrix-ipv4-io-cfg">
      <addresses>
        <secondaries>
          <xsl:for-each select="ip:addresses/ip:address[position() &gt; 1]">
            <secondary nc:operation="replace">
              <address>
                <xsl:value-of select="ip:ip"/>
              </address>
              <xsl:call-template name="netmask"/>
            </secondary>
          </xsl:for-each>
        </secondaries>
        <xsl:for-each select="ip:addresses/ip:address[1]">
          <primary nc:operation="replace">
            <address nc:operation="replace">
              <xsl:value-of select="ip:ip"/>
            </address>
            <xsl:call-template name="netmask"/>
          </primary>
        </xsl:for-each>
      </addresses>
      <xsl:for-each select="ip:config/ip:mtu">
        <mtu nc:operation="replace">
          <xsl:value-of select="."/>
        </mtu>
      </xsl:for-each>
    </ipv4-network>
  </xsl:template>

  <xsl:template name="netmask">
    <xsl:variable name="name" select="concat(';', ip:config/ip:prefix-length, '=')"/>
    <netmask xmlns="urn:halvane:yang:Halvane-Ombrix-ipv4-io-cfg" nc:operation="replace">
      <xsl:value-of select="substring-before(substring-after($netmasks, $name), ';')"/>
    </netmask>
  </xsl:template>
</xsl:stylesheet>
